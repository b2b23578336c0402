// SPDX-License-Identifier: MIT
// The Apple events of running scripts, sent from a shared queue while the script's thread waits: so a run can be cancelled or timed out
// whatever the receiver does, and the main thread, when it is the one that waits, goes on serving the user.
#pragma once

#include "platform/ae/AESendMessage.h"

#include <chrono>

namespace quoddle {

class QXOSAComponent;

/// Sends on the shared queue (20 at once) and waits on the calling thread. The status of the send, with the reply stored; or the
/// component's `timeoutError` when no reply came in time, its `threadCanceledError` when the run was cancelled meanwhile (`cancelled` stays
/// set): `reply` is then untouched, and the send ends by itself, unheard. `reply` may be null.
OSStatus sendInBackground(const std::shared_ptr<QXOSAComponent>& component, const AEDesc& event, AEDesc* reply, AESendMode sendMode,
                          std::int32_t timeoutInTicks);
/// For the end of the process: waits until every send has ended, also those that nobody waits for any more; what they have begun (a shell
/// command and its children) ends with them. False when some are still under way after that time.
bool waitForSends(std::chrono::milliseconds atMost);

} // namespace quoddle

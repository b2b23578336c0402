// SPDX-License-Identifier: MIT
// Sends the Apple events of running scripts from a shared queue while the script's thread waits. So a run can be cancelled or timed out
// whatever the receiver does, and the main thread, when it is the one that waits, goes on serving the user.
#pragma once

#include "platform/ae/AESendMessage.h"

#include <chrono>
#include <memory>

namespace quoddle {

class QXOSAComponent;

/// Sends the event on the shared queue (20 at once) and waits on the calling thread. Returns the status of the send and stores the reply in
/// `reply` (may be null). Returns the component's `timeoutError` when no reply has come in time, and its `threadCanceledError` when the run
/// was cancelled meanwhile (`cancelled` stays set). `reply` is then unchanged, and the send ends by itself without effect.
OSStatus sendInBackground(const std::shared_ptr<QXOSAComponent>& component, const AEDesc& event, AEDesc* reply, AESendMode sendMode,
                          std::int32_t timeoutInTicks);
/// Called at the end of the process: waits until all sends have ended, abandoned ones included, so that what they have begun (a shell
/// command and its children) ends with them. False when some are still running after that time.
bool waitForSends(std::chrono::milliseconds atMost);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Sends an event to another process and waits for its reply. Connections are kept for the next event; each carries one event at a time, so
// a thread that waits reads its own reply and nobody stands between.
#pragma once

#include "platform/ae/AESendMessage.h"

namespace quoddle {

/// The contract of AESendMessage for a process that is known: -600 when nobody listens, -609 when the other side ends before it has
/// answered.
OSStatus AESendToProcess(std::int32_t processID, const AEDesc& event, AEDesc* reply, AESendMode sendMode, std::int32_t timeoutInTicks,
                         const AESendOptions& options);

} // namespace quoddle

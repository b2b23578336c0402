// SPDX-License-Identifier: MIT
// Shared by all ways of sending: how long a sender waits, and how it recognizes its reply.
#pragma once

#include "platform/ae/AESendMessage.h"

#include <chrono>

namespace quoddle {

constexpr AESendMode kAEReplyModes = 0x03;

/// The time at which a sender gives up. -1 means two minutes, -2 never; ticks are 1/60 s.
std::chrono::steady_clock::time_point AEDeadlineAfter(std::int32_t timeoutInTicks);
/// The event with a return ID by which its reply is recognized.
AEDesc AENumbered(const AEDesc& event);
AEDesc AEEmptyReplyTo(const AEDesc& event);
/// Passes a reply for which no sender waited to the handler of "aevt"/"ansr", on the main thread.
void AEDispatchQueuedReply(const AEDesc& reply);

} // namespace quoddle

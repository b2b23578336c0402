// SPDX-License-Identifier: MIT
// What all ways of sending have in common: how long to wait, and how a reply is known.
#pragma once

#include "platform/ae/AESendMessage.h"

#include <chrono>

namespace quoddle {

constexpr AESendMode kAEReplyModes = 0x03;

/// -1 is two minutes, -2 the end of time; ticks are 1/60 s.
std::chrono::steady_clock::time_point AEDeadlineAfter(std::int32_t timeoutInTicks);
/// An event that is to be answered needs a return ID that its reply can be known by.
AEDesc AENumbered(const AEDesc& event);
AEDesc AEEmptyReplyTo(const AEDesc& event);
/// Hands a reply that nobody waited for to the handler of "aevt"/"ansr", on the main thread.
void AEDispatchQueuedReply(const AEDesc& reply);

} // namespace quoddle

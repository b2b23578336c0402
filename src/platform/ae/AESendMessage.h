// SPDX-License-Identifier: MIT
// Sending an Apple event. To this process (null address, "psn " {0, 2}, the own "kpid") it is delivered directly, without flattening;
// every other address goes through one hook, the remote sender, and is answered with -600 until one is installed.
#pragma once

#include "platform/ae/AEDesc.h"

#include <functional>

namespace quoddle {

/// The attribute "esrc" of an event that another process has sent.
constexpr std::int32_t kAELocalProcess = 3;

using AESendMode = std::int32_t;
using AESendPriority = std::int16_t;

constexpr AESendMode kAENoReply = 0x01;
constexpr AESendMode kAEQueueReply = 0x02;
constexpr AESendMode kAEWaitReply = 0x03;
constexpr AESendMode kAENeverInteract = 0x10;
constexpr AESendMode kAECanInteract = 0x20;
constexpr AESendMode kAEAlwaysInteract = 0x30;
constexpr AESendMode kAECanSwitchLayer = 0x40;

constexpr std::int32_t kAEDefaultTimeout = -1; ///< two minutes
constexpr std::int32_t kNoTimeOut = -2;

struct AESendOptions {
    /// Asked about every 5 ms while waiting; true makes the sender give up with -128. May be empty.
    std::function<bool()> cancelled;
    /// Handed on to the handlers of scripting additions.
    const void* handlerRefCon = nullptr;
};

/// Any thread. kAEWaitReply waits for the one reply and stores it; on a failure `reply` (may be null) is left as it was.
/// kAEQueueReply returns at once, the reply arrives as an event "aevt"/"ansr"; any other mode asks for no reply.
/// Answers the status of the delivery, not that of the handler, which is the reply's "errn": 0; -1708 when nobody takes the event (also in
/// "errn"); -1707 no Apple event; -1712 timeout (in ticks of 1/60 s); -128 cancelled; -600 no such process; -1716 unknown kind of address.
OSStatus AESendMessage(const AEDesc& event, AEDesc* reply, AESendMode sendMode, std::int32_t timeoutInTicks,
                       const AESendOptions& options = {});

/// As if the event had been sent here, whatever its address, with the reply record given; each handler on its own thread. Waits for the
/// answer without a time-out and answers the handler's status. -1708 when nobody takes it, -128 when cancelled.
OSErr AEDispatchAppleEvent(const AEDesc& event, AEDesc& reply, const AESendOptions& options = {});

/// Whether the address means this process.
bool AEIsCurrentProcess(const AEDesc& address);

/// Where events for other processes go: the transport between processes puts itself in here. The contract is AESendMessage's.
using AERemoteSender = std::function<OSStatus(const AEDesc& event, AEDesc* reply, AESendMode sendMode, std::int32_t timeoutInTicks,
                                              const AESendOptions& options)>;
/// Installed once, before the first event; an empty one takes it away again.
void AESetRemoteSender(AERemoteSender sender);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Sends Apple events. An event for this process (null address, "psn " {0, 2}, its own "kpid") is delivered directly, without flattening.
// Events for all other addresses go through the remote sender; as long as none is installed, they are answered with -600.
#pragma once

#include "platform/ae/AEDesc.h"

#include <functional>

namespace quoddle {

/// The value of the attribute "esrc" of an event from another process.
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
    /// Asked while the sender waits: whenever wakeWaits() is called, at least once a second, and every few milliseconds on the main thread.
    /// `true` makes the sender give up with -128. May be empty.
    std::function<bool()> cancelled;
    /// Passed to the handlers of scripting additions.
    const void* handlerRefCon = nullptr;
};

/// Any thread. kAEWaitReply waits for the one reply and stores it in `reply` (may be null), which stays unchanged on a failure.
/// kAEQueueReply returns at once, and the reply arrives as an event "aevt"/"ansr". Any other mode asks for no reply. `timeoutInTicks` is in
/// ticks of 1/60 s.
/// Returns the status of the delivery; the handler's status is in the reply's "errn". 0; -1708 without a handler (also in "errn"); -1707 no
/// Apple event; -1712 timeout; -128 cancelled; -600 no such process; -1716 unknown kind of address.
OSStatus AESendMessage(const AEDesc& event, AEDesc* reply, AESendMode sendMode, std::int32_t timeoutInTicks,
                       const AESendOptions& options = {});

/// Handles an event as if it had been sent here, whatever its address, and fills the given reply record. The application's handlers run on
/// the main thread, additions' on this one. Waits for the answer without a timeout and returns the handler's status. -1708 without a
/// handler, -128 when cancelled.
OSErr AEDispatchAppleEvent(const AEDesc& event, AEDesc& reply, const AESendOptions& options = {});

/// Whether the address means this process.
bool AEIsCurrentProcess(const AEDesc& address);

/// The function that sends events to other processes; the transport installs its own. The contract is AESendMessage's.
using AERemoteSender = std::function<OSStatus(const AEDesc& event, AEDesc* reply, AESendMode sendMode, std::int32_t timeoutInTicks,
                                              const AESendOptions& options)>;
/// Called once, before the first event; an empty function removes the installed one.
void AESetRemoteSender(AERemoteSender sender);

} // namespace quoddle

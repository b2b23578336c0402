// SPDX-License-Identifier: MIT
// What a component's delegate may hear of while a script runs. Every operation is optional.
#pragma once

#include "platform/ae/AEDesc.h"
#include "platform/ae/AESendMessage.h"

#include <optional>

namespace quoddle {

/// All are called on the thread that runs the script.
class QXOSAComponentDelegate {
public:
    virtual ~QXOSAComponentDelegate() = default;
    /// Often, and once before every event that is sent.
    virtual void scriptDidYield() {}
    /// Whether the delegate itself gives the events of the main thread their turn when a script there yields. Otherwise the component does,
    /// and leaves those of the user for the normal loop.
    virtual bool servesMainThreadEvents() { return false; }
    /// A script that the main thread runs waits for a reply: called again and again until the wait is over.
    virtual void scriptWaitsOnMainThread() {}
    /// Whether the script that the main thread runs is to end. Nothing: the component's own flag says so, which scripts on all threads
    /// share.
    virtual std::optional<bool> isMainThreadScriptCancelled() { return {}; }
    /// Not for requests of terminology ("ascr"/"gdte", "gdut"). The timeout is the effective one.
    virtual void willSendAppleEvent(const AEDesc& event, AESendMode sendMode, std::int32_t sendPriority, std::int32_t timeoutInTicks) {
        (void)event, (void)sendMode, (void)sendPriority, (void)timeoutInTicks;
    }
    virtual void didSendAppleEvent(const AEDesc& event, const AEDesc& reply, OSStatus status) { (void)event, (void)reply, (void)status; }
};

} // namespace quoddle

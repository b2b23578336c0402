// SPDX-License-Identifier: MIT
// Notifications of a component to its delegate while a script runs. All are optional.
#pragma once

#include "platform/ae/AEDesc.h"
#include "platform/ae/AESendMessage.h"

#include <optional>

namespace quoddle {

/// All functions are called on the thread that runs the script.
class QXOSAComponentDelegate {
public:
    virtual ~QXOSAComponentDelegate() = default;
    /// Called often, and once before every event that is sent.
    virtual void scriptDidYield() {}
    /// Whether the delegate itself processes the main thread's events when a script there yields. Otherwise the component does, without
    /// user input, which it leaves to the normal event loop.
    virtual bool servesMainThreadEvents() { return false; }
    /// Called repeatedly while a script on the main thread waits for a reply.
    virtual void scriptWaitsOnMainThread() {}
    /// Whether the script on the main thread is to end. nullopt: the component's own flag decides, which scripts on all threads share.
    virtual std::optional<bool> isMainThreadScriptCancelled() { return {}; }
    /// Not called for requests of terminology ("ascr"/"gdte", "gdut"). The timeout is the effective one.
    virtual void willSendAppleEvent(const AEDesc& event, AESendMode sendMode, std::int32_t sendPriority, std::int32_t timeoutInTicks) {
        (void)event, (void)sendMode, (void)sendPriority, (void)timeoutInTicks;
    }
    virtual void didSendAppleEvent(const AEDesc& event, const AEDesc& reply, OSStatus status) { (void)event, (void)reply, (void)status; }
};

} // namespace quoddle

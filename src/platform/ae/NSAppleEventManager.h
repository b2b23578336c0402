// SPDX-License-Identifier: MIT
// NSAppleEventManager: which handler takes which Apple event in this process, and events whose answer comes later.
// An application's handler runs on the main thread, a scripting addition's on the sending thread (it may take long).
// A look-up tries (class, ID), (class, "****"), ("****", ID), ("****", "****"), first among the application's handlers, then among the
// additions'. It does not send (AESendMessage.h) and knows no other process.
#pragma once

#include "platform/ae/NSAppleEventDescriptor.h"

#include <functional>
#include <memory>

namespace quoddle {

/// Names a suspended event; empty when there is none. When the last copy goes away without a resume, the event is answered with -10000.
class NSAppleEventSuspension;
using NSAppleEventManagerSuspensionID = std::shared_ptr<NSAppleEventSuspension>;

/// What a scripting addition's handler may ask for while it works.
struct AEHandlerContext {
    /// May be empty. True when the sender has given up: end within 100 ms and answer -128.
    std::function<bool()> cancelled;
    const void* handlerRefCon = nullptr;
    bool isCancelled() const { return cancelled && cancelled(); }
};

class NSAppleEventManager {
public:
    /// The reply is of type "null" when the sender wants none; changing it is then without effect. An exception that escapes is answered
    /// with -10000.
    using Handler = std::function<void(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent)>;
    /// Answers a status; any but 0 goes into the reply's "errn" unless the handler put one there. -1708 passes the event over.
    using AdditionHandler = std::function<OSErr(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context)>;

    NSAppleEventManager();
    ~NSAppleEventManager();
    static NSAppleEventManager& sharedAppleEventManager();

    /// Any thread. "****" is any class or ID. Replaces the handler of the same pair.
    void setEventHandler(Handler handler, AEEventClass forEventClass, AEEventID andEventID);
    void removeEventHandlerForEventClass(AEEventClass forEventClass, AEEventID andEventID);
    void setAdditionHandler(AdditionHandler handler, AEEventClass forEventClass, AEEventID andEventID);
    void removeAdditionHandlerForEventClass(AEEventClass forEventClass, AEEventID andEventID);
    bool hasEventHandlerForEventClass(AEEventClass forEventClass, AEEventID andEventID) const;
    bool hasAdditionHandlerForEventClass(AEEventClass forEventClass, AEEventID andEventID) const;

    /// Runs the handler at once on the calling thread and fills the reply, which may be of type "null". -1708 without a handler.
    /// A handler that suspends the event leaves the reply as it is and the status 0; AEDispatchAppleEvent (AESendMessage.h) waits for the
    /// answer.
    OSErr dispatchRawAppleEvent(const AEDesc& theAppleEvent, AEDesc& withRawReply, const void* handlerRefCon);

    /// The event whose handler runs on this thread, or nil.
    NSAppleEventDescriptorRef currentAppleEvent() const;
    NSAppleEventDescriptorRef currentReplyAppleEvent() const;
    /// Empty when no event is being handled on this thread, or it is suspended already.
    NSAppleEventManagerSuspensionID suspendCurrentAppleEvent();
    NSAppleEventDescriptorRef appleEventForSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID) const;
    /// The same object on every call; nil for an empty ID.
    NSAppleEventDescriptorRef replyAppleEventForSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID) const;
    /// Nobody waits for the answer any more: the sender was stopped, its script's time is over, or it is gone. False for an empty ID.
    bool senderHasGivenUpForSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID) const;
    /// The work as a part of the handler that runs on this thread: it may be done on another one, while this one waits for it, and finds
    /// the same current event there.
    std::function<void()> asPartOfCurrentAppleEvent(std::function<void()> work) const;
    void setCurrentAppleEventAndReplyEventWithSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID);
    /// Sends the reply. Once; later calls do nothing.
    void resumeWithSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID);
    /// When the process ends: every suspended event is answered with -609.
    void answerSuspendedEvents();

private:
    friend class AEDeliverer;
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace quoddle

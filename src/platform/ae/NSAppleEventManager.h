// SPDX-License-Identifier: MIT
// The handlers of Apple events in this process, and events that are answered later.
// An application's handler runs on the main thread, a scripting addition's on the sending thread (it may take long).
// A look-up tries (class, ID), (class, "****"), ("****", ID), ("****", "****"), first among the application's handlers, then among the
// additions'. AESendMessage.h sends events; this class knows no other process.
#pragma once

#include "platform/ae/NSAppleEventDescriptor.h"

#include <functional>
#include <memory>

namespace quoddle {

/// A suspended event; empty when there is none. When the last copy is destroyed without a resume, the event is answered with -10000.
class NSAppleEventSuspension;
using NSAppleEventManagerSuspensionID = std::shared_ptr<NSAppleEventSuspension>;

/// The environment of a scripting addition's handler.
struct AEHandlerContext {
    /// True when the sender has given up: the handler must then end within 100 ms with -128. May be empty.
    std::function<bool()> cancelled;
    const void* handlerRefCon = nullptr;
    bool isCancelled() const { return cancelled && cancelled(); }
};

class NSAppleEventManager {
public:
    /// The reply is of type "null" when the sender wants none; changing it then has no effect. An exception that leaves the handler is
    /// answered with -10000.
    using Handler = std::function<void(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent)>;
    /// Returns a status; any but 0 is put into the reply's "errn" unless the handler has set it. -1708 leaves the event to the next
    /// handler.
    using AdditionHandler = std::function<OSErr(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context)>;

    NSAppleEventManager();
    ~NSAppleEventManager();
    static NSAppleEventManager& sharedAppleEventManager();

    /// Any thread. "****" stands for any class or ID. Replaces the handler of the same pair.
    void setEventHandler(Handler handler, AEEventClass forEventClass, AEEventID andEventID);
    void removeEventHandlerForEventClass(AEEventClass forEventClass, AEEventID andEventID);
    void setAdditionHandler(AdditionHandler handler, AEEventClass forEventClass, AEEventID andEventID);
    void removeAdditionHandlerForEventClass(AEEventClass forEventClass, AEEventID andEventID);
    bool hasEventHandlerForEventClass(AEEventClass forEventClass, AEEventID andEventID) const;
    bool hasAdditionHandlerForEventClass(AEEventClass forEventClass, AEEventID andEventID) const;

    /// Runs the handler directly on the calling thread and fills the reply, which may be of type "null". -1708 without a handler. When the
    /// handler suspends the event, the reply stays unchanged and the status is 0; AEDispatchAppleEvent (AESendMessage.h) waits for the
    /// answer.
    OSErr dispatchRawAppleEvent(const AEDesc& theAppleEvent, AEDesc& withRawReply, const void* handlerRefCon);

    /// The event whose handler runs on this thread; nil when there is none.
    NSAppleEventDescriptorRef currentAppleEvent() const;
    NSAppleEventDescriptorRef currentReplyAppleEvent() const;
    /// Empty when no event is being handled on this thread, or it is suspended already.
    NSAppleEventManagerSuspensionID suspendCurrentAppleEvent();
    NSAppleEventDescriptorRef appleEventForSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID) const;
    /// The reply; the same object on every call. Nil for an empty ID.
    NSAppleEventDescriptorRef replyAppleEventForSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID) const;
    /// Whether nobody waits for the answer any more: the sender was stopped, its time is over, or it has ended. False for an empty ID.
    bool senderHasGivenUpForSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID) const;
    /// Wraps work of the handler that runs on this thread, so that it has the same current event when it runs on another thread. This
    /// thread must wait for it meanwhile.
    std::function<void()> asPartOfCurrentAppleEvent(std::function<void()> work) const;
    void setCurrentAppleEventAndReplyEventWithSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID);
    /// Sends the reply. Only the first call has an effect.
    void resumeWithSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID);
    /// Answers every suspended event with -609. Called when the process ends.
    void answerSuspendedEvents();

private:
    friend class AEDeliverer;
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace quoddle

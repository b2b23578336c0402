// SPDX-License-Identifier: MIT
// The delivery of one event within this process, from its arrival to its one answer. Private to this layer.
// Shared by the sender that waits, the thread that runs the handler and, when the handler suspends the event, the holder of the suspension.
#pragma once

#include "platform/ae/NSAppleEventManager.h"
#include "platform/base/Wait.h"

#include <chrono>
#include <mutex>
#include <utility>

namespace quoddle {

class AEDelivery : public std::enable_shared_from_this<AEDelivery> {
public:
    enum class Outcome { Answered, TimedOut, Cancelled };
    using OnAnswer = std::function<void(const AEDesc& reply)>;

    /// `reply` is an event to fill, or of type "null" when no reply is wanted. `onAnswer` (may be empty) is called on the thread that
    /// answers.
    AEDelivery(AEDesc event, AEDesc reply, AEHandlerContext context, OnAnswer onAnswer = {});

    /// Sends the answer: the reply's present contents, with the status as "errn" unless the reply has one. Only the first call counts.
    void answer(OSErr status);
    /// Answers with an empty reply, for callers that cannot rule out that another thread is still filling the reply.
    void breakOff(OSErr status);
    bool isAnswered() const;
    /// The status and the reply are valid once answered.
    OSErr status() const { return mStatus; }
    const AEDesc& answeredReply() const { return mAnsweredReply; }
    /// Waits for the answer. At most one thread may wait. `giveUp` (may be empty) is asked whenever the thread is woken; on the main
    /// thread, which keeps processing its events, every few milliseconds.
    Outcome wait(const std::function<bool()>& giveUp, std::chrono::steady_clock::time_point deadline);

    const NSAppleEventDescriptorRef& event() const { return mEvent; }
    const NSAppleEventDescriptorRef& reply() const { return mReply; }
    const AEHandlerContext& context() const { return mContext; }

    /// The delivery whose handler runs on this thread, or null.
    static AEDelivery* current();
    /// False when the event is already suspended.
    bool suspend() { return !std::exchange(mSuspended, true); }
    bool isSuspended() const { return mSuspended; }

    /// Makes a delivery the thread's current one as long as the object lives.
    class Scope {
    public:
        explicit Scope(AEDelivery* delivery);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        AEDelivery* mOuter;
    };
    /// Makes this the current delivery for the rest of the handler that runs on this thread.
    void makeCurrent();

private:
    void answerWith(const std::function<AEDesc()>& reply, OSErr status);

    const NSAppleEventDescriptorRef mEvent;
    const NSAppleEventDescriptorRef mReply;
    const AEDesc mEmptyReply;
    const AEHandlerContext mContext;
    const OnAnswer mOnAnswer;
    bool mSuspended = false; ///< used only by the thread that runs the handler

    mutable std::mutex mMutex;
    std::shared_ptr<Waker> mWaiting; // null as long as nobody has waited
    bool mAnswered = false;
    OSErr mStatus = noErr;
    AEDesc mAnsweredReply;
};

/// Finds handlers and runs them.
class AEDeliverer {
public:
    /// Runs the application's handler on the main thread, or else an addition's on this one. False when there is none; the event is then
    /// answered with -1708.
    static bool deliver(NSAppleEventManager& manager, const std::shared_ptr<AEDelivery>& delivery);
    /// Like deliver(), but runs any handler on this thread.
    static bool deliverHere(NSAppleEventManager& manager, const std::shared_ptr<AEDelivery>& delivery);
};

} // namespace quoddle

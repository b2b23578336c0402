// SPDX-License-Identifier: MIT
// AEDelivery: one event on its way through this process, from the moment it arrives until its one answer. Private to this layer.
// Shared by the sender that waits, the thread that runs the handler, and, when the handler suspends the event, whoever holds the
// suspension.
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

    /// The reply is an event to fill, or of type "null" when none is wanted. `onAnswer` (may be empty) is called on the thread that
    /// answers.
    AEDelivery(AEDesc event, AEDesc reply, AEHandlerContext context, OnAnswer onAnswer = {});

    /// Sends the answer: the reply as it is now, with the status as its "errn" unless there is one. Only the first call counts.
    void answer(OSErr status);
    /// The same when somebody may still be filling the reply, on any thread: what it holds is not looked at.
    void breakOff(OSErr status);
    bool isAnswered() const;
    /// Valid once answered.
    OSErr status() const { return mStatus; }
    const AEDesc& answeredReply() const { return mAnsweredReply; }
    /// One thread at most. Asks `giveUp` (may be empty) whenever it is woken; on the main thread, whose events go on being processed, every
    /// few milliseconds.
    Outcome wait(const std::function<bool()>& giveUp, std::chrono::steady_clock::time_point deadline);

    const NSAppleEventDescriptorRef& event() const { return mEvent; }
    const NSAppleEventDescriptorRef& reply() const { return mReply; }
    const AEHandlerContext& context() const { return mContext; }

    /// The delivery whose handler runs on this thread, or null.
    static AEDelivery* current();
    /// False when it is suspended already.
    bool suspend() { return !std::exchange(mSuspended, true); }
    bool isSuspended() const { return mSuspended; }

    /// Makes a delivery the current one of this thread for a while.
    class Scope {
    public:
        explicit Scope(AEDelivery* delivery);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        AEDelivery* mOuter;
    };
    /// For the rest of the handler that runs on this thread.
    void makeCurrent();

private:
    void answerWith(const std::function<AEDesc()>& reply, OSErr status);

    const NSAppleEventDescriptorRef mEvent;
    const NSAppleEventDescriptorRef mReply;
    const AEDesc mEmptyReply;
    const AEHandlerContext mContext;
    const OnAnswer mOnAnswer;
    bool mSuspended = false; ///< belongs to the thread that runs the handler

    mutable std::mutex mMutex;
    std::shared_ptr<Waker> mWaiting; // null: nobody has waited
    bool mAnswered = false;
    OSErr mStatus = noErr;
    AEDesc mAnsweredReply;
};

/// Finds handlers and runs them.
class AEDeliverer {
public:
    /// The application's handler on the main thread, an addition's on this one. False when nobody takes the event, which is then answered
    /// with -1708.
    static bool deliver(NSAppleEventManager& manager, const std::shared_ptr<AEDelivery>& delivery);
    /// All handlers on this thread.
    static bool deliverHere(NSAppleEventManager& manager, const std::shared_ptr<AEDelivery>& delivery);
};

} // namespace quoddle

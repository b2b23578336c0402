// SPDX-License-Identifier: MIT
#include "platform/ae/AEDelivery.h"

#include "platform/ae/AEMainThread.h"

#include <algorithm>

namespace quoddle {

namespace {

constexpr std::chrono::milliseconds kSlice{5}; // for the main thread's events

thread_local AEDelivery* tCurrent = nullptr;

} // namespace

AEDelivery::AEDelivery(AEDesc event, AEDesc reply, AEHandlerContext context, OnAnswer onAnswer)
    : mEvent(NSAppleEventDescriptor::descriptorWithAEDesc(std::move(event))), mReply(NSAppleEventDescriptor::descriptorWithAEDesc(reply)),
      mEmptyReply(std::move(reply)), mContext(std::move(context)), mOnAnswer(std::move(onAnswer)) {}

void AEDelivery::answer(OSErr status) {
    answerWith([this] { return mReply->aeDesc(); }, status);
}

void AEDelivery::breakOff(OSErr status) {
    answerWith([this] { return mEmptyReply; }, status);
}

void AEDelivery::answerWith(const std::function<AEDesc()>& reply, OSErr status) {
    {
        std::lock_guard lock(mMutex);
        if (mAnswered)
            return;
        mAnsweredReply = reply();
        if (status != noErr && mAnsweredReply.isAppleEvent() && !mAnsweredReply.find("errn"_4cc))
            mAnsweredReply.put("errn"_4cc, AEDesc::ofInt32(status));
        mStatus = status;
        mAnswered = true;
        if (mWaiting)
            mWaiting->wake();
    }
    if (mOnAnswer)
        mOnAnswer(mAnsweredReply);
}

bool AEDelivery::isAnswered() const {
    std::lock_guard lock(mMutex);
    return mAnswered;
}

AEDelivery::Outcome AEDelivery::wait(const std::function<bool()>& giveUp, std::chrono::steady_clock::time_point deadline) {
    {
        const std::lock_guard lock(mMutex);
        if (mAnswered)
            return Outcome::Answered;
        mWaiting = Wait::waker();
    }
    for (Wait wait; !isAnswered();) {
        if (std::chrono::steady_clock::now() >= deadline)
            return Outcome::TimedOut;
        if (giveUp && giveUp())
            return isAnswered() ? Outcome::Answered : Outcome::Cancelled;
        if (!AEProcessMainThreadEvents(kSlice))
            wait.pause(deadline);
    }
    return Outcome::Answered;
}

AEDelivery* AEDelivery::current() {
    return tCurrent;
}

void AEDelivery::makeCurrent() {
    tCurrent = this;
}

AEDelivery::Scope::Scope(AEDelivery* delivery) : mOuter(std::exchange(tCurrent, delivery)) {}

AEDelivery::Scope::~Scope() {
    tCurrent = mOuter;
}

} // namespace quoddle

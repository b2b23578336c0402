// SPDX-License-Identifier: MIT
#include "engine/BackgroundSend.h"

#include "engine/AESendMessageResult.h"
#include "engine/OSACallbacks.h"
#include "engine/QXOSAComponent.h"
#include "platform/ae/AEMainThread.h"
#include "platform/ae/AEWaiting.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSConditionLock.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/NSOperationQueue.h"

#include <QCoreApplication>

namespace quoddle {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kMaximumSends = 20;
constexpr auto kSlice = std::chrono::milliseconds(50); // a cancelled run is to end within 100
constexpr int kPending = 0, kHandled = 1;

/// Never destroyed: a send that nobody waits for any more may outlive everything else.
NSOperationQueue& sendQueue() {
    static auto* const queue = new NSOperationQueue(kMaximumSends);
    return *queue;
}

std::shared_ptr<NSOperation> makeSend(const QXOSAComponentRef& component, const AEDesc& event, AESendMode sendMode, std::int32_t ticks,
                                      const std::shared_ptr<AESendMessageResult>& result, const std::shared_ptr<NSConditionLock>& lock) {
    auto send = std::make_shared<NSOperation>([=] {
        const AESendOptions options{[result] { return result->isAbandoned(); }, component.get()};
        result->setError(AESendMessage(event, result->replyEventPointer(), sendMode, ticks, options));
        if (result->error() == errAETimeout)
            result->abandon(); // whichever of the two limits comes first, the handler learns that nobody waits
        if (lock)
            lock->lockWhenCondition(kPending);
        result->setHandled(true);
        if (lock)
            lock->unlockWithCondition(kHandled);
        else
            AEPostToMainThread([] {}); // it waits among its events
    });
    send->setQueuePriority(NSOperation::QueuePriority::high);
    return send;
}

/// Whatever an event's handler throws is not the sender's affair: the wait goes on.
void serveEvents(Clock::time_point sliceEnd) {
    try {
        AEProcessMainThreadEvents(std::chrono::ceil<std::chrono::milliseconds>(sliceEnd - Clock::now()));
    } catch (...) {
        NSLog(QStringLiteral("An exception came from the events that were served while a script waits for a reply"));
    }
}

} // namespace

OSStatus sendInBackground(const QXOSAComponentRef& component, const AEDesc& event, AEDesc* reply, AESendMode sendMode,
                          std::int32_t timeoutInTicks) {
    const bool isMain = QCoreApplication::instance() && MainThread::isCurrent();
    const auto lock = isMain ? nullptr : std::make_shared<NSConditionLock>(kPending);
    const auto result = std::make_shared<AESendMessageResult>();
    sendQueue().addOperation(makeSend(component, event, sendMode, timeoutInTicks, result, lock));
    yieldToDelegate(*component);

    const Clock::time_point limit = AEDeadlineAfter(timeoutInTicks);
    bool locked = false;
    OSStatus status = noErr;
    while (!result->isHandled()) {
        if (Clock::now() >= limit) {
            status = component->timeoutError();
            break;
        }
        const Clock::time_point sliceEnd = std::min(Clock::now() + kSlice, limit);
        if (isMain) {
            serveEvents(sliceEnd);
            tellOfWaiting(*component);
        } else {
            locked = lock->lockWhenConditionBeforeDate(kHandled, sliceEnd);
        }
        if (!result->isHandled() && isRunCancelled(*component)) {
            status = component->threadCanceledError();
            break;
        }
    }
    if (result->isHandled() && status == noErr) {
        // The send may have reached its own limit first.
        const bool timedOut = result->error() == errAETimeout;
        status = timedOut ? component->timeoutError() : result->error();
        if (reply && !timedOut)
            *reply = result->detachedReplyEvent();
    } else {
        result->abandon();
    }
    if (locked)
        lock->unlock();
    return status;
}

bool waitForSends(std::chrono::milliseconds atMost) {
    return sendQueue().waitUntilAllOperationsAreFinished(atMost);
}

} // namespace quoddle

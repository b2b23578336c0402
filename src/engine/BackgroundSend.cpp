// SPDX-License-Identifier: MIT
#include "engine/BackgroundSend.h"

#include "engine/AESendMessageResult.h"
#include "engine/OSACallbacks.h"
#include "engine/QXOSAComponent.h"
#include "platform/ae/AEMainThread.h"
#include "platform/ae/AEWaiting.h"
#include "platform/base/Wait.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/NSOperationQueue.h"

#include <QCoreApplication>

namespace quoddle {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kMaximumSends = 20;
constexpr auto kSlice = std::chrono::milliseconds(50); // for the main thread's events

/// Never destroyed, because abandoned sends may run until the process ends.
NSOperationQueue& sendQueue() {
    static auto* const queue = new NSOperationQueue(kMaximumSends);
    return *queue;
}

std::shared_ptr<NSOperation> makeSend(const QXOSAComponentRef& component, const AEDesc& event, AESendMode sendMode, std::int32_t ticks,
                                      const std::shared_ptr<AESendMessageResult>& result, const std::shared_ptr<Waker>& sender) {
    auto send = std::make_shared<NSOperation>([=] {
        const AESendOptions options{[result] { return result->isAbandoned(); }, component.get()};
        result->setError(AESendMessage(event, result->replyEventPointer(), sendMode, ticks, options));
        if (result->error() == errAETimeout)
            result->abandon(); // the send's own limit may be the first: tell the handler that nobody waits any more
        result->setHandled(true);
        sender->wake();
    });
    send->setQueuePriority(NSOperation::QueuePriority::high);
    return send;
}

/// Serves the main thread's events for a slice of time. Exceptions from their handlers do not concern the sender, whose wait goes on.
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
    const auto result = std::make_shared<AESendMessageResult>();
    sendQueue().addOperation(makeSend(component, event, sendMode, timeoutInTicks, result, Wait::waker()));
    yieldToDelegate(*component);

    const Clock::time_point limit = AEDeadlineAfter(timeoutInTicks);
    OSStatus status = noErr;
    for (Wait wait; !result->isHandled();) {
        if (Clock::now() >= limit) {
            status = component->timeoutError();
            break;
        }
        if (isRunCancelled(*component)) {
            status = component->threadCanceledError();
            break;
        }
        if (isMain) {
            serveEvents(std::min(Clock::now() + kSlice, limit));
            tellOfWaiting(*component);
        } else {
            wait.pause(limit);
        }
    }
    if (result->isHandled() && status == noErr) {
        // The send may have reached its own limit before this wait did.
        const bool timedOut = result->error() == errAETimeout;
        status = timedOut ? component->timeoutError() : result->error();
        if (reply && !timedOut)
            *reply = result->detachedReplyEvent();
    } else {
        result->abandon();
    }
    return status;
}

bool waitForSends(std::chrono::milliseconds atMost) {
    return sendQueue().waitUntilAllOperationsAreFinished(atMost);
}

} // namespace quoddle

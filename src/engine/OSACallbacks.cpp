// SPDX-License-Identifier: MIT
#include "engine/OSACallbacks.h"

#include "engine/BackgroundSend.h"
#include "engine/QXOSAComponent.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSLog.h"

#include <algorithm>

#include <QCoreApplication>
#include <QThread>

namespace quoddle {

namespace {

bool isOnMainThread() {
    return QCoreApplication::instance() && MainThread::isCurrent();
}

/// The delegate's answer whether the script on this thread is cancelled; nullopt when the component's flag decides.
std::optional<bool> delegatesDecision(const QXOSAComponent& component) {
    return isOnMainThread() && component.delegate() ? component.delegate()->isMainThreadScriptCancelled() : std::nullopt;
}

/// Processes pending events of the main thread without waiting. User input is left to the normal event loop.
void serveMainThreadEvents(const QXOSAComponent& component) {
    if (!isOnMainThread() || !component.yieldCPU() || (component.delegate() && component.delegate()->servesMainThreadEvents()))
        return;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

} // namespace

void takeBackCancellation(QXOSAComponent& component) {
    if (!delegatesDecision(component))
        component.setCancelled(false);
}

namespace {

// The low 16 bits of a status, which is all that a procedure can return.
OSErr shortened(OSStatus status) {
    return static_cast<OSErr>(status);
}

OSErr acceptCancellation(QXOSAComponent& component) {
    takeBackCancellation(component);
    return shortened(component.threadCanceledError());
}

/// The seconds until the deadline; nullopt without a deadline.
std::optional<double> secondsLeft(const QXOSAComponent& component) {
    QDateTime timeout = component.timeout();
    if (!timeout.isValid())
        return {};
    return static_cast<double>(timeout.toMSecsSinceEpoch() - QDateTime::currentMSecsSinceEpoch()) / 1000;
}

bool deadlineHasPassed(const QXOSAComponent& component) {
    std::optional<double> left = secondsLeft(component);
    return left && *left <= 0;
}

/// The script's timeout, but at most the time until the deadline. "default" and "none" are negative and so stay unchanged.
std::int32_t effectiveTimeout(std::optional<double> left, std::int32_t ticks) {
    if (!left)
        return ticks;
    double ticksLeft = std::min(*left * 60, static_cast<double>(std::numeric_limits<std::int32_t>::max()));
    return std::min(ticks, static_cast<std::int32_t>(ticksLeft));
}

/// Whether an event is the component's own request for an application's terminology, of which the delegate is not told.
bool isTerminologyRequest(AEEventClass eventClass, AEEventID eventID) {
    return eventClass == "ascr"_4cc && (eventID == "gdte"_4cc || eventID == "gdut"_4cc);
}

/// Calls the delegate and logs its exceptions, because the scripting component could not handle them.
template<class Call>
void tellDelegate(const QXOSAComponent& component, Call call) {
    QXOSAComponentDelegate* delegate = component.delegate();
    if (!delegate)
        return;
    try {
        call(*delegate);
    } catch (const std::exception& exception) {
        NSLog(QStringLiteral("%@"), {QString::fromUtf8(exception.what())});
    } catch (...) {
        NSLog(QStringLiteral("An exception that is none of the library's came from a component's delegate"));
    }
}

AESendOptions optionsFor(const QXOSAComponentRef& component) {
    return {[component] { return isRunCancelled(*component); }, component.get()};
}

/// Replaces the status of a wait that was given up by the component's own. The cancellation stays set for the next procedure.
OSStatus statusOfWait(const QXOSAComponent& component, OSStatus status) {
    if (status == errAETimeout)
        return component.timeoutError();
    return status == userCanceledErr && isRunCancelled(component) ? component.threadCanceledError() : status;
}

OSStatus statusAfterSending(QXOSAComponent& component, OSStatus status) {
    if (status == noErr && deadlineHasPassed(component))
        status = component.timeoutError();
    if (status == noErr && isRunCancelled(component)) {
        takeBackCancellation(component);
        status = component.threadCanceledError();
    }
    return status;
}

} // namespace

bool isRunCancelled(const QXOSAComponent& component) {
    if (const auto said = delegatesDecision(component))
        return *said;
    std::shared_ptr<NSOperation> operation = component.operation();
    return component.isCancelled() || (operation && operation->isCancelled()) || QThread::currentThread()->isInterruptionRequested();
}

void yieldToDelegate(const QXOSAComponent& component) {
    tellDelegate(component, [](QXOSAComponentDelegate& delegate) { delegate.scriptDidYield(); });
}

void tellOfWaiting(const QXOSAComponent& component) {
    tellDelegate(component, [](QXOSAComponentDelegate& delegate) { delegate.scriptWaitsOnMainThread(); });
}

OSErr OSAActiveCallback(void* refCon) {
    QXOSAComponentRef component = QXOSAComponent::_componentForRefCon(refCon);
    if (!component)
        return noErr;
    if (isRunCancelled(*component))
        return acceptCancellation(*component);
    if (deadlineHasPassed(*component))
        return shortened(component->timeoutError());
    serveMainThreadEvents(*component);
    yieldToDelegate(*component);
    return noErr;
}

OSErr OSASendCallback(const AEDesc& event, AEDesc* reply, AESendMode sendMode, AESendPriority sendPriority, std::int32_t timeOutInTicks,
                      AEIdleProc, AEFilterProc, void* refCon) {
    QXOSAComponentRef component = QXOSAComponent::_componentForRefCon(refCon);
    if (!component)
        return shortened(AESendMessage(event, reply, sendMode, timeOutInTicks));
    if (isRunCancelled(*component))
        return acceptCancellation(*component);
    // Read once, because the deadline may pass meanwhile, and a negative number of ticks would mean the default.
    const std::optional<double> left = secondsLeft(*component);
    if (left && *left <= 0)
        return shortened(component->timeoutError());
    std::int32_t timeout = effectiveTimeout(left, timeOutInTicks);
    AEEventClass eventClass = event.eventClass();
    AEEventID eventID = event.eventID();
    if (component->preventDestructiveEvents() && QXOSAComponent::isDangerousEventSuite(eventClass, eventID))
        return shortened(component->destructiveEventError());

    bool wasResuming = component->isResuming();
    std::optional<AEDesc> resumed = reply ? reply->attribute("FDrm"_4cc) : std::nullopt;
    component->setResuming(resumed && resumed->asBoolean().value_or(false));
    bool isNotified = !isTerminologyRequest(eventClass, eventID);
    if (isNotified)
        tellDelegate(*component, [&](auto& delegate) { delegate.willSendAppleEvent(event, sendMode, sendPriority, timeout); });
    OSStatus status;
    if (sendMode & kAEWaitReply) {
        status = sendInBackground(component, event, reply, sendMode, timeout);
    } else {
        yieldToDelegate(*component);
        status = AESendMessage(event, reply, sendMode, timeout, optionsFor(component));
    }
    status = statusAfterSending(*component, status);
    if (isNotified)
        tellDelegate(*component, [&](auto& delegate) { delegate.didSendAppleEvent(event, reply ? *reply : AEDesc(), status); });
    component->setResuming(wasResuming);
    return shortened(status);
}

OSErr OSAResumeCallback(const AEDesc& event, AEDesc* reply, void* refCon) {
    QXOSAComponentRef component = QXOSAComponent::_componentForRefCon(refCon);
    AEDesc none;
    AEDesc& answer = reply ? *reply : none;
    if (!component)
        return AEDispatchAppleEvent(event, answer);
    if (isRunCancelled(*component))
        return acceptCancellation(*component);
    component->setResuming(true);
    answer.setAttribute("FDrm"_4cc, AEDesc::ofBoolean(true));
    return shortened(statusOfWait(*component, AEDispatchAppleEvent(event, answer, optionsFor(component))));
}

} // namespace quoddle

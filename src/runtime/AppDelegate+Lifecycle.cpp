// SPDX-License-Identifier: MIT
// Run, idle, stop and quit, and the framework's questions about the end.
#include "runtime/AppDelegate.h"

#include "engine/QXOSAException.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSLog.h"

#include <cmath>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

const QString kRunIdleHandler = u"_runIdleHandler"_s;
constexpr std::int64_t kDefaultIdleSeconds = 30;
constexpr double kDialogPatience = 3; // seconds in which a script may answer one cancelled dialog with the next
constexpr double kDialogSlice = 0.05; // seconds between two looks whether a dialog has gone
constexpr double kNegligible = 0.05;  // seconds that an idle call takes without its handler having anything to do

NSAppleEventDescriptorRef parameterlessEvent(AEEventClass eventClass, AEEventID eventID) {
    return NSAppleEventDescriptor::appleEventWithEventClass(eventClass, eventID);
}

/// How long the script's idle handler wants to be left alone.
std::int64_t idleSecondsFrom(const QXOSAIDRef& result) {
    const NSAppleEventDescriptorRef descriptor = result ? result->descriptor() : nullptr;
    if (!descriptor)
        return kDefaultIdleSeconds;
    switch (descriptor->descriptorType()) {
    case "comp"_4cc:
    case "long"_4cc:
    case "magn"_4cc:
    case "shor"_4cc:
    case "ucom"_4cc:
    case "ushr"_4cc:
        return descriptor->int32Value();
    case "doub"_4cc:
    case "sing"_4cc: {
        constexpr double kBeyondAllClocks = 1e15;
        const double seconds = descriptor->doubleValue();
        return std::isnan(seconds) ? 0 : static_cast<std::int64_t>(std::clamp(seconds, -kBeyondAllClocks, kBeyondAllClocks));
    }
    default:
        return kDefaultIdleSeconds;
    }
}

} // namespace

void AppDelegate::runMainScript() {
    setScriptStarted(true);
    const auto files = filenamesToOpen();
    if (hasOpenHandler() && files) {
        applicationOpenFiles(*files);
        setFilenamesToOpen({});
    } else if (hasRunHandler()) {
        // Unlike at launch, a quit handler keeps the applet.
        _respondToEventInBackground(nullptr, [this](const QXOSAIDRef&, const QXOSAErrorInfoRef&) {
            if (!isStayOpenScript() && !hasOpenHandler() && !hasQuitHandler())
                terminate();
        });
    } else if (hasOpenHandler()) {
        windowController().showLastViewController();
    }
    if (hasIdleHandler())
        scheduleIdleHandler(0);
}

void AppDelegate::scheduleIdleHandler(std::int64_t afterSeconds) {
    mParts.performs->cancelPreviousPerformRequests(this, kRunIdleHandler);
    performIdleHandlerAt(mParts.performs->now() + static_cast<double>(afterSeconds));
}

void AppDelegate::performIdleHandlerAt(double time) {
    mIdleCallDue = time;
    mParts.performs->perform(
        this, kRunIdleHandler, [this] { _runIdleHandler(); }, time - mParts.performs->now());
}

void AppDelegate::_runIdleHandler() {
    mAwaitedUntil = 0; // what an idle handler shows, nobody has asked for
    _respondToEventInBackground(parameterlessEvent("misc"_4cc, "idle"_4cc),
                                [this](const QXOSAIDRef& result, const QXOSAErrorInfoRef& error) {
                                    setIdleSeconds(idleSecondsFrom(result));
                                    if (idleSeconds() < 0 || error)
                                        return;
                                    // Counted from the end of the handler; but what timers and the queue cost must not add up over a day.
                                    const double now = mParts.performs->now();
                                    const double from = now - mIdleCallDue < kNegligible ? mIdleCallDue : now;
                                    performIdleHandlerAt(from + static_cast<double>(idleSeconds()));
                                });
}

void AppDelegate::_runQuitHandler() {
    if (!hasQuitHandler())
        return;
    setRunningQuitHandler(true);
    _respondToEventInBackground(
        parameterlessEvent("aevt"_4cc, "quit"_4cc), [this](const QXOSAIDRef& result, const QXOSAErrorInfoRef& error) {
            NSLogTrace(u"applicationShouldTerminate: quit event processed: %@, error: %@"_s,
                       {result ? QVariant(result->stringValue()) : QVariant(), error ? QVariant(error->description()) : QVariant()});
            setRunningQuitHandler(false);
            mHasSignal = false;
            if ((!error || error->error() == noErr) && mainScript()->component()->isResuming())
                terminate();
            else if (mParts.application->isRunning()) {
                mParts.application->terminationWasRefused();
                showLastPane();
            }
        });
}

void AppDelegate::stopRunningScript() {
    setUserStoppedScript(true);
    const bool wasJudging = stopJudgingFiles();
    if (_isRespondingToScript())
        cancelScript();
    else if (wasJudging)
        return;
    else if (!hasIdleHandler())
        terminate();
    else
        _runQuitHandler();
}

// The dialog may be one whose script has ended without an answer, and be about to go; nobody would ask a second time.
void AppDelegate::terminate() {
    const QString again = u"terminate"_s;
    mParts.performs->cancelPreviousPerformRequests(this, again);
    if (!isDisplayingPanel())
        return mParts.application->terminate();
    if (mEndIsCertain)
        return endInSpiteOfDialogs(mParts.performs->now() + kDialogPatience);
    mParts.performs->perform(
        this, again,
        [this] {
            if (!_isRespondingToScript()) // what has begun since then decides when it ends
                terminate();
        },
        kDialogSlice);
}

// The quit handler is asked once: a signal that finds it asking the user something ends the applet without it.
bool AppDelegate::applicationReceivedSignal() {
    mSignalIsFinal = mSignalIsFinal || runningQuitHandler();
    endInSpiteOfDialogs(mParts.performs->now() + kDialogPatience);
    return true;
}

// A dialog in a loop of its own is gone a moment after it was cancelled, and a script may answer that with another one.
void AppDelegate::endInSpiteOfDialogs(double latest) {
    const QString again = u"endInSpiteOfDialogs"_s;
    mParts.performs->cancelPreviousPerformRequests(this, again);
    if (isDisplayingPanel() && mParts.performs->now() < latest) {
        NSNotificationCenter::defaultCenter().postNotification(SessionWillEndNotification, this);
        mParts.performs->perform(
            this, again, [this, latest] { endInSpiteOfDialogs(latest); }, kDialogSlice);
        return;
    }
    const bool isFinal = std::exchange(mSignalIsFinal, false) || isDisplayingPanel();
    if (isFinal)
        return mParts.application->replyToApplicationShouldTerminate(true);
    mHasSignal = true;
    mParts.application->terminate();
}

void AppDelegate::cancelScript() {
    if (const QXOSAIDRef script = mainScript())
        script->component()->setCancelled(true);
}

void AppDelegate::setAppletIsQuitting(bool quitting, const QXOSAIDRef& script) {
    try {
        script->setDescriptorForPropertyName(NSAppleEventDescriptor::descriptorWithBoolean(quitting), u"appletisquitting"_s);
    } catch (const QXOSAException& exception) {
        NSLog(u"appletisquitting: %@"_s, {exception.reason()});
    }
}

NSApplicationTerminateReply AppDelegate::applicationShouldTerminate() {
    if (isDisplayingPanel())
        return NSApplicationTerminateReply::cancel;
    if (runningQuitHandler())
        return NSApplicationTerminateReply::now;
    mQuitWaits = true; // before the look, so that an execution which ends meanwhile sees it
    if (_isRespondingToScript()) {
        setApplicationTriedToQuit(true);
        // Through a handle of its own: the script's own one is about to tell the other thread how the execution ended.
        if (const QXOSAIDRef script = mainScript())
            setAppletIsQuitting(true, QXOSAID::QXOSAIDWithComponent(script->component(), script->valueID(), false));
        // Twice in one go would also stop what the script does about being stopped.
        holdWaitingScripts(); // until the quit is decided: callers of what waits may be told that the applet has ended
        if (!mStoppedByClosing)
            cancelScript();
        return NSApplicationTerminateReply::later;
    }
    mQuitWaits = false;
    if (!scriptStarted() || !hasQuitHandler())
        return NSApplicationTerminateReply::now;
    setApplicationTriedToQuit(true);
    _runQuitHandler();
    return NSApplicationTerminateReply::cancel; // the handler ends the process by passing the quit on
}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed() {
    if (userClosedWindow()) {
        setUserClosedWindow(false);
        return true;
    }
    if (!showStartupScreen() && isStayOpenScript())
        return false;
    return !scriptStarted() || !_isRespondingToScript();
}

void AppDelegate::_windowWillClose(const NSNotification& notification) {
    if (!notification.object || notification.object != windowController().windowObject())
        return; // a dialog or a panel
    setUserClosedWindow(true);
    setApplicationTriedToQuit(true);
    mKeepsWindow = false;
    mStoppedByClosing = _isRespondingToScript();
    // A quit handler that this starts decides whether the applet ends; when it refuses, the window comes back.
    stopRunningScript();
    // The question that the closing leads to comes in this turn of the loop.
    MainThread::dispatchAsync([this] { mStoppedByClosing = false; });
}

bool AppDelegate::respondsToAction(const QString& action) const {
    return action == "terminate:"_L1 || action == "checkForUpdates:"_L1;
}

void AppDelegate::performAction(const QString& action) {
    if (action == "terminate:"_L1)
        terminate();
    else if (mParts.updater)
        mParts.updater->checkForUpdates();
}

bool AppDelegate::validateMenuItem(const NSMenuItem& item) {
    if (item.action() == "terminate:"_L1)
        return !isDisplayingPanel() && mParts.application->validatesAction(item.action());
    return true;
}

} // namespace quoddle

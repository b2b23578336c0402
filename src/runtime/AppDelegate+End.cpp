// SPDX-License-Identifier: MIT
// The delegate's side of its end: what it tells AppletEnd, how it answers AppletEnd's questions, and how it performs AppletEnd's decisions.
#include "runtime/AppDelegate.h"

#include "engine/QXOSAException.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSLog.h"

namespace quoddle {

using namespace Qt::StringLiterals;
using Happening = AppletEnd::Happening;
using Act = AppletEnd::Act;

void AppDelegate::setDisplayingPanel(bool displaying) {
    if (isDisplayingPanel() == displaying)
        return;
    AppDelegateProperties::setDisplayingPanel(displaying);
    mEnd.dialogsChanged(displaying);
}

void AppDelegate::terminate() {
    mEnd.happened(Happening::wish);
}

bool AppDelegate::applicationReceivedSignal() {
    mEnd.happened(Happening::signal);
    return true;
}

void AppDelegate::applicationWaitsWoken() {
    mEnd.happened(Happening::answersMayHaveCome);
}

void AppDelegate::stopRunningScript() {
    setUserStoppedScript(true);
    const bool wasJudging = stopJudgingFiles();
    if (!wasJudging || _isRespondingToScript())
        mEnd.happened(Happening::stop);
}

NSApplicationTerminateReply AppDelegate::applicationShouldTerminate() {
    switch (mEnd.happened(Happening::question)) {
    case Act::allow:
        return NSApplicationTerminateReply::now;
    case Act::stopHandlerFirst:
        return NSApplicationTerminateReply::later;
    default:
        return NSApplicationTerminateReply::cancel;
    }
}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed() {
    const Act answer = mEnd.happened(Happening::lastWindowClosed);
    setUserClosedWindow(false);
    return answer == Act::allow;
}

void AppDelegate::_windowWillClose(const NSNotification& notification) {
    if (!notification.object || notification.object != windowController().windowObject())
        return; // the window of a dialog or a panel
    setUserClosedWindow(true);
    setApplicationTriedToQuit(true);
    mKeepsWindow = false;
    mStoppedByClosing = _isRespondingToScript();
    // Stop may start a quit handler, which then decides whether the applet ends; when it refuses, the window comes back.
    stopRunningScript();
    // Reset in a later turn of the loop: the framework asks whether to terminate in this one.
    MainThread::dispatchAsync([this] { mStoppedByClosing = false; });
}

bool AppDelegate::holds(AppletEnd::Fact fact) {
    switch (fact) {
    case AppletEnd::dialogIsUp:
        return isDisplayingPanel();
    case AppletEnd::isResponding:
        return _isRespondingToScript();
    case AppletEnd::quitHandlerRuns:
        return runningQuitHandler();
    case AppletEnd::hasStarted:
        return scriptStarted();
    case AppletEnd::hasQuitHandler:
        return hasQuitHandler();
    case AppletEnd::hasIdleHandler:
        return hasIdleHandler();
    case AppletEnd::hasTriedToQuit:
        return applicationTriedToQuit();
    case AppletEnd::othersWait:
        return mParts.areOthersAnswered && !mParts.areOthersAnswered(!hasQuitHandler());
    case AppletEnd::userClosedWindow:
        return userClosedWindow();
    case AppletEnd::staysWithoutWindow:
        return !showStartupScreen() && isStayOpenScript();
    default:
        return false;
    }
}

void AppDelegate::perform(Act act) {
    switch (act) {
    case Act::askFramework:
        return mParts.application->terminate();
    case Act::endNow:
        return mParts.application->replyToApplicationShouldTerminate(true);
    case Act::takeDialogsAway:
        return NSNotificationCenter::defaultCenter().postNotification(SessionWillEndNotification, this);
    case Act::stopHandler:
        return cancelScript();
    case Act::askQuitHandler:
        return _runQuitHandler();
    case Act::askQuitHandlerFirst:
        setApplicationTriedToQuit(true);
        return _runQuitHandler();
    case Act::stopHandlerFirst:
        return stopHandlerForQuit();
    case Act::grant:
        mParts.application->replyToApplicationShouldTerminate(true);
        return releaseWaitingScripts();
    case Act::goOn:
    case Act::goOnAndAskAgain:
        setApplicationTriedToQuit(false);
        mParts.application->replyToApplicationShouldTerminate(false);
        return releaseWaitingScripts();
    case Act::goOnWithQuitHandler:
        mParts.application->replyToApplicationShouldTerminate(false);
        releaseWaitingScripts();
        return _runQuitHandler();
    case Act::tellRefusal:
        if (!mParts.application->isRunning())
            return;
        mParts.application->terminationWasRefused();
        return showLastPane();
    default:
        return;
    }
}

void AppDelegate::stopHandlerForQuit() {
    setApplicationTriedToQuit(true);
    // The property is set by a second handle, because the script's own one is about to tell the other thread how the execution ended.
    if (const QXOSAIDRef script = mainScript())
        setAppletIsQuitting(true, QXOSAID::QXOSAIDWithComponent(script->component(), script->valueID(), false));
    // Held until the quit is decided, because the callers of waiting executions may be told that the applet has ended.
    holdWaitingScripts();
    // A second cancellation would also stop what the script does about the first.
    if (!mStoppedByClosing)
        cancelScript();
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

} // namespace quoddle

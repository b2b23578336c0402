// SPDX-License-Identifier: MIT
// Executions of handlers: queued one by one, run on the queue's thread, finished on the main thread.
#include "runtime/AppDelegate.h"

#include "engine/BackgroundSend.h"
#include "engine/QXOSAException.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSLog.h"

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

NSOperationQueue* scriptQueue(bool create) {
    // Exists from the first execution to the end of the process, because a thread that is still inside must not see it destroyed.
    static NSOperationQueue* sScriptQueue = nullptr;
    if (!sScriptQueue && create)
        sScriptQueue = new NSOperationQueue(1);
    return sScriptQueue;
}

} // namespace

/// One queued request and its outcome. It is used by the main thread, then by the queue's thread, then by the main thread again, never by
/// two at once.
struct AppDelegate::Execution {
    bool hasEvent = false;
    bool hasBegun = false;
    AEDesc event; // a value, because it goes to the other thread
    Completion completion;
    NSAppleEventManagerSuspensionID suspensionID;
    QXOSAIDRef script;
    QXOSAIDRef result;
    QXOSAErrorInfoRef errorInfo;

    bool isQuitEvent() const { return hasEvent && event.eventClass() == "aevt"_4cc && event.eventID() == "quit"_4cc; }
    OSStatus number() const { return errorInfo ? errorInfo->error() : noErr; }
    /// The error for completions; nil when the record tells of none.
    QXOSAErrorInfoRef error() const { return number() != noErr ? errorInfo : nullptr; }
    void complete() const {
        if (completion)
            completion(result, error());
    }
};

void AppDelegate::_respondToEventInBackground(const NSAppleEventDescriptorRef& event, Completion completion,
                                              const NSAppleEventManagerSuspensionID& eventSuspendsionID) {
    Q_ASSERT(MainThread::isCurrent());
    auto execution = std::make_shared<Execution>();
    execution->hasEvent = event != nullptr;
    if (event)
        execution->event = event->aeDesc();
    execution->completion = std::move(completion);
    execution->suspensionID = eventSuspendsionID;
    execution->script = mainScript();
    if (!eventSuspendsionID) {
        ++mOwnExecutions;
        mPaneIsForCalls = false; // the end of this execution removes the pane
    }
    if (hasOpenHandler() || hasQuitHandler())
        showProgressPane();
    auto operation = std::make_shared<NSOperation>([this, execution] { execute(execution); });
    // Runs when the queue has released the operation, so that the finishing step sees a running handler only if there is another one.
    operation->setCompletionBlock([this, execution] {
        if (!execution->hasBegun)
            return; // it was dropped; answerSuspendedEvents() answers its caller
        // A call without completion is answered on this thread, because its caller waits and the answer does not need the main thread.
        if (!execution->suspensionID || execution->completion)
            return MainThread::dispatchAsync([this, execution] { finish(execution); });
        finishIncomingCall(*execution);
        MainThread::dispatchAsync([this, execution] { callHasEnded(*execution); });
    });
    scriptQueue(true)->addOperation(std::move(operation));
    noteActivity();
}

void AppDelegate::noteActivity() {
    const bool isResponding = _isRespondingToScript();
    if (std::exchange(mWasResponding, isResponding) != isResponding)
        NSNotificationCenter::defaultCenter().postNotification(ScriptActivityChangedNotification, this);
}

void AppDelegate::execute(const std::shared_ptr<Execution>& execution) {
    execution->hasBegun = true;
    const QXOSAIDRef& script = execution->script;
    if (!script)
        return;
    try {
        setAppletIsQuitting(false, script);
        execution->result =
            execution->hasEvent ? script->executeEvent(NSAppleEventDescriptor::descriptorWithAEDesc(execution->event)) : script->execute();
    } catch (const QXOSAException& exception) {
        NSLog(u"execute: %@"_s, {exception.reason()}); // a failure of the engine itself counts as a run without result
    }
    if (script->lastError() == errOSAScriptError)
        execution->errorInfo = script->component()->lastErrorInfo();
    scriptDidYield(); // lets the window show the final progress
}

void AppDelegate::_handleSubroutineCallEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef&) {
    mWasAsked = true;
    const auto suspensionID = NSAppleEventManager::sharedAppleEventManager().suspendCurrentAppleEvent();
    _respondToEventInBackground(event, {}, suspensionID);
}

bool AppDelegate::_isRespondingToScript() {
    const NSOperationQueue* queue = scriptQueue(false);
    if (!queue || queue->operationCount() == 0)
        return false;
    const QXOSAIDRef script = mainScript();
    return !(script && script->component()->isResuming());
}

bool AppDelegate::waitForScripts(std::chrono::milliseconds atMost) {
    NSOperationQueue* queue = scriptQueue(false);
    return !queue || (queue->waitUntilAllOperationsAreFinished(atMost) && waitForSends(atMost));
}

void AppDelegate::dropWaitingScripts() {
    if (NSOperationQueue* queue = scriptQueue(false)) {
        queue->cancelWaitingOperations();
        queue->resume(); // a suspended queue would not release the cancelled operations
    }
}

void AppDelegate::holdWaitingScripts() {
    if (NSOperationQueue* queue = scriptQueue(false))
        queue->suspendBehindRunning();
}

void AppDelegate::releaseWaitingScripts() {
    if (NSOperationQueue* queue = scriptQueue(false))
        queue->resume();
}

void AppDelegate::cancelScripts() {
    if (NSOperationQueue* queue = scriptQueue(false))
        queue->cancelAllOperations();
    const AppDelegate* delegate = instance();
    if (delegate && delegate->mMainScript)
        delegate->mMainScript->component()->setCancelled(true);
}

void AppDelegate::finish(const std::shared_ptr<Execution>& execution) {
    if (!mParts.application->isRunning())
        return;
    if (!execution->suspensionID) {
        --mOwnExecutions;
        mAwaitedUntil = 0;
        noteActivity();
    }
    const OSStatus number = execution->number();
    if (!execution->suspensionID && number != noErr && number != userCanceledErr)
        finishFatalError(execution);
    else if (execution->suspensionID) {
        finishIncomingCall(*execution);
        callHasEnded(*execution);
    } else
        finishOwnEvent(*execution);
}

void AppDelegate::finishFatalError(const std::shared_ptr<Execution>& execution) {
    releaseWaitingScripts();
    showAlert(runtimeErrorAlert(*execution->errorInfo), [this, execution] {
        execution->complete();
        // QUIRK: an error in the quit handler ends the applet, like one in any other handler; users rely on being able to end an applet
        // whose quit handler fails each time.
        if (execution->isQuitEvent())
            setRunningQuitHandler(true);
        terminate();
    });
}

void AppDelegate::finishIncomingCall(const Execution& execution) {
    execution.complete();
    auto& manager = NSAppleEventManager::sharedAppleEventManager();
    const auto reply = manager.replyAppleEventForSuspensionID(execution.suspensionID);
    auto put = [&reply](const NSAppleEventDescriptorRef& value, AEKeyword keyword) {
        if (value)
            reply->setParamDescriptor(value, keyword);
    };
    if (execution.result)
        put(execution.result->descriptor(), "----"_4cc);
    if (const QXOSAErrorInfoRef& error = execution.errorInfo) {
        put(NSAppleEventDescriptor::descriptorWithInt32(error->error()), "errn"_4cc);
        // QUIRK: the message has the same keyword as the number and takes its place; callers rely on reading the message there.
        put(NSAppleEventDescriptor::descriptorWithString(error->message()), "errn"_4cc);
        put(error->offendingObject(), "erob"_4cc);
        put(error->partialResult(), "ptlr"_4cc);
        put(error->application(), "erap"_4cc);
        put(error->expectedType(), "errt"_4cc);
    } else {
        put(NSAppleEventDescriptor::descriptorWithInt32(noErr), "errn"_4cc);
    }
    manager.resumeWithSuspensionID(execution.suspensionID);
}

void AppDelegate::finishOwnEvent(const Execution& execution) {
    using enum AppletEnd::State;
    const bool wasFinished = mEnd.state() == finished;
    execution.complete();
    if (!mParts.application->isRunning())
        return; // the completion has ended the applet
    if (applicationTriedToQuit())
        return finishAfterTryToQuit(execution);
    if (wasFinished)
        mEnd.happened(AppletEnd::Happening::answersMayHaveCome);
    if (!mParts.application->isRunning() || mEnd.state() == finished)
        return; // a finished applet shows nothing new
    if (!mFilesToJudge.empty())
        windowController().setStopButtonEnabled(true); // more files will be opened
    else if (isStayOpenScript())
        finishStayOpen(!execution.hasEvent);
    else if (execution.number() == userCanceledErr && !runningQuitHandler())
        terminate();
    else {
        windowController().setStopButtonEnabled(true);
        windowController().showLastViewController();
    }
}

AppletEnd::Act AppDelegate::tellOfHandlersEnd(const Execution& execution) {
    using enum AppletEnd::Happening;
    const bool wasStopped = execution.number() == userCanceledErr;
    // A quit handler that was itself stopped, most likely by "Cancel" in its dialog, counts as a refusal: asking it again would never end.
    return mEnd.happened(!wasStopped ? handlerEnded : execution.isQuitEvent() ? quitHandlerStopped : handlerStopped);
}

void AppDelegate::finishAfterTryToQuit(const Execution& execution) {
    using enum AppletEnd::Act;
    const AppletEnd::Act act = tellOfHandlersEnd(execution);
    if (act == goOn || act == goOnAndAskAgain)
        showLastPaneWithoutStop();
    mEnd.happened(AppletEnd::Happening::answersMayHaveCome);
}

/// Does what a caller's answer leaves to do on the main thread: an end that waited for the answer goes on. The window changes only when it
/// shows progress for calls alone and nothing runs any more, because a press of the Stop button that is left there would end the applet.
void AppDelegate::callHasEnded(const Execution& execution) {
    if (!mParts.application->isRunning())
        return;
    noteActivity();
    if (mEnd.isQuitWaiting())
        tellOfHandlersEnd(execution);
    if (mPaneIsForCalls && mParts.application->isRunning() && !_isRespondingToScript()) {
        mPaneIsForCalls = false;
        showLastPaneWithoutStop();
    }
    mEnd.happened(AppletEnd::Happening::answersMayHaveCome);
}

void AppDelegate::finishStayOpen(bool afterRunHandler) {
    showLastPaneWithoutStop();
    if (afterRunHandler && hasIdleHandler() && !showStartupScreen())
        scheduleIdleHandler(idleSeconds());
}

void AppDelegate::showLastPaneWithoutStop() {
    if (!showStartupScreen())
        windowController().setStopButtonHidden(true);
    showLastPane();
}

void AppDelegate::showLastPane() {
    if (mKeepsWindow)
        windowController().showIdleViewController();
    else
        windowController().showLastViewController();
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Executions: queued one by one, run on the queue's thread, finished on the main thread.
#include "runtime/AppDelegate.h"

#include "engine/BackgroundSend.h"
#include "engine/QXOSAException.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSLog.h"

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

NSOperationQueue* scriptQueue(bool create) {
    // From the first execution to the end of the process; a thread that is still in it must not find it destroyed.
    static NSOperationQueue* sScriptQueue = nullptr;
    if (!sScriptQueue && create)
        sScriptQueue = new NSOperationQueue(1);
    return sScriptQueue;
}

} // namespace

/// One queued request, and what became of it. Belongs to one thread after the other.
struct AppDelegate::Execution {
    bool hasEvent = false;
    bool hasBegun = false;
    AEDesc event; // a value, for it crosses to the other thread
    Completion completion;
    NSAppleEventManagerSuspensionID suspensionID;
    QXOSAIDRef script;
    QXOSAIDRef result;
    QXOSAErrorInfoRef errorInfo;

    bool isQuitEvent() const { return hasEvent && event.eventClass() == "aevt"_4cc && event.eventID() == "quit"_4cc; }
    OSStatus number() const { return errorInfo ? errorInfo->error() : noErr; }
    /// What completions are told: a record of no error is none.
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
        mPaneIsForCalls = false; // the end of this one puts the pane away
    }
    if (hasOpenHandler() || hasQuitHandler())
        showProgressPane();
    auto operation = std::make_shared<NSOperation>([this, execution] { execute(execution); });
    // When this runs the queue has let go of the operation: the finishing step finds no handler running, unless another one is.
    operation->setCompletionBlock([this, execution] {
        if (!execution->hasBegun)
            return; // dropped: its caller is answered with all others
        // Answering a caller needs nothing of the main thread, and the caller waits.
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
        NSLog(u"execute: %@"_s, {exception.reason()}); // the engine's own failure counts as a run without result
    }
    if (script->lastError() == errOSAScriptError)
        execution->errorInfo = script->component()->lastErrorInfo();
    scriptDidYield(); // so that the final progress is seen
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
        queue->resume(); // what was cancelled has to leave it
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
        // Kept on purpose: an error ends the applet in the quit handler as in every other. Asked again it would fail again, and nobody
        // could end the applet.
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
        // Under the same keyword: the message takes the number's place. Callers know it so.
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
        return; // it shows nothing new
    if (!mFilesToJudge.empty())
        windowController().setStopButtonEnabled(true); // more files are to come
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
    // A quit handler that was itself stopped (a "Cancel" in its dialog, most likely) has refused: asking it again would never end.
    return mEnd.happened(!wasStopped ? handlerEnded : execution.isQuitEvent() ? quitHandlerStopped : handlerStopped);
}

void AppDelegate::finishAfterTryToQuit(const Execution& execution) {
    using enum AppletEnd::Act;
    const AppletEnd::Act act = tellOfHandlersEnd(execution);
    if (act == goOn || act == goOnAndAskAgain)
        showLastPaneWithoutStop();
    mEnd.happened(AppletEnd::Happening::answersMayHaveCome);
}

/// The caller has its answer; whoever wants the applet to end waits for one too. The window stays as it is, unless it shows the progress of
/// nothing: a Stop button that is left over would end the applet.
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

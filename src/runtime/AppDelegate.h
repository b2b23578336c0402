// SPDX-License-Identifier: MIT
// AppDelegate: the core of the applet shell. It loads the applet's script, decides which of its handlers run when, and when the process
// ends. It is one class with a file for each duty: configuration and scripts (AppDelegate.cpp), +Launch, +Lifecycle (run, idle, quit), +End
// (what AppletEnd decides), +OpenFiles, +ScriptQueue (execution and its end), +OutsideEvents (what other applications send),
// +Hooks (questions to the script), +FileTypes (the files that a droplet takes), +Progress, +Alerts.
// One decision: everything is decided on the main thread, which never waits for the script; only executions and scriptDidYield() run on the
// script queue's thread. All functions belong to the main thread unless their comments say otherwise.
#pragma once

#include "platform/ae/NSAppleEventManager.h"
#include "platform/foundation/NSMenu.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "runtime/AppDelegateParts.h"
#include "runtime/AppDelegateProperties.h"
#include "runtime/AppletEnd.h"

#include <chrono>
#include <deque>

namespace quoddle {

/// Posted on the main thread with the delegate as object when the script has reported new progress; user information: "totalSteps", "steps"
/// (int), "description", "additionalDescription" (text).
inline const QString ProgressChangedNotification = QStringLiteral("ProgressChangedNotification");

/// Posted on the main thread with the delegate as object when a handler has begun to run or to wait for its turn, or the last one has
/// ended.
inline const QString ScriptActivityChangedNotification = QStringLiteral("ScriptActivityChangedNotification");

/// With this as the first of the files to open, the shell works on an applet to be tested instead of the one that it was started as.
inline const QString kTestModeFilename = QStringLiteral("QUODDLE_DEBUG");

class AppDelegate : public AppDelegateProperties,
                    public NSApplicationDelegate,
                    public QXOSAComponentDelegate,
                    public SUUpdaterDelegate,
                    private AppletEnd::Host {
public:
    /// The one delegate; null before there is one. Any thread.
    static AppDelegate* instance();
    explicit AppDelegate(AppDelegateParts parts);
    ~AppDelegate() override;

    /// The menu item for updates, an outlet; null when the menu has none, or none any more.
    NSMenuItem* checkForUpdatesMenuItem() const;

    // Configuration and scripts
    bool isStayOpenScript() const;
    bool showStartupScreen() const;
    /// The script as loaded by the generic component. Nil only without that component; empty when loading failed.
    QXOSAIDRef mainGenericScript();
    /// The same script on its real component; nil when there is none. The first call must come from the main thread, later ones may come
    /// from any thread.
    QXOSAIDRef mainScript();
    /// Stores the script's properties for the next launch when a run has changed them. Called when nothing of the script runs any more.
    void storeProperties();
    /// Whether the script has the handler; false while the script's component is resuming.
    bool hasOpenHandler() { return hasHandler(&QXOSAID::hasOpenHandler); }
    bool hasIdleHandler() { return hasHandler(&QXOSAID::hasIdleHandler); }
    bool hasRunHandler() { return hasHandler(&QXOSAID::hasRunHandler); }
    bool hasQuitHandler() { return hasHandler(&QXOSAID::hasQuitHandler); }

    // Launch
    void applicationWillFinishLaunching() override;
    void applicationDidFinishLaunching() override;
    /// Runs the script when the run is still due, because the launch was for another event; otherwise shows a hidden window, and calls the
    /// script's reopen handler when another application or the user asks. (The handler itself asks when it continues the command.)
    void applicationWillReopen(bool isAskedByOther) override;
    /// Shows a hidden window: always when another application asks, otherwise only while nothing is running.
    void applicationWillActivate(bool isAskedByOther) override;
    void _setupApplication(bool toOpenFiles);
    /// Whether a window that appears now is the one for which the user has launched the applet: the first one, soon after a launch. Such a
    /// window takes the keyboard; every other one appears without it.
    bool takeAwaitedWindow();
    /// Replaces every "APPNAME" in the titles of the menu and of its submenus.
    static void _setAppName(const QString& name, NSMenu& inMenu);

    // File types
    /// Reads the types of files that the bundle declares and sets the two predicates. Without a declaration, or with one for everything, no
    /// predicate is set.
    void _loadExtAndUTIPrefs();
    /// Each list must have at least one entry.
    void _predsForExtensions(const QStringList& extensions);
    void _predsForUTIs(const QStringList& identifiers);
    void _predsForUTIs(const QStringList& identifiers, const QStringList& andExtensions);

    // Hooks: handlers and properties by which a script shapes its applet. A script error in a handler is shown, which ends the applet.
    /// Asks the hook "appletfileisacceptable". Without it a script with an open handler takes every file. False after a script error.
    bool isFileAcceptable(const QString& path);
    /// Whether an error of the script is being shown; the applet ends when the user has seen it.
    bool isEndingWithError() const { return mShowingRuntimeError; }
    /// Whether the script decides which files are acceptable, for which it may take its time.
    bool asksAboutFiles();
    /// Whether the hook that ended last was stopped; false after isFileAcceptable() for a script without that hook.
    bool hookWasStopped() const { return mHookWasStopped; }
    /// The number of hooks under way. There can be several, because what the user does while one waits may lead to the next.
    int hookDepth() const;
    /// Stops the hook that began when `depth` others were under way. Does nothing when there is no such hook.
    void stopHook(int depth);
    /// Tells whether something is dragged over a window. No panel offers to stop a hook then: under the pointer it would end the drag, and
    /// with the drag the hook. Leaving the window stops the hook as well.
    void setDragging(bool dragging) { mIsDragging = dragging; }
    /// The properties "appletsearchname" and "appletdropname", or the localised "DefaultFindFilesPrompt" and "DefaultDropFilesPrompt".
    QString appletSearchPrompt();
    QString appletDropPrompt();
    /// The properties "appletsearchimage" and "appletdropimage"; null: no image. Without the property the search has no image, and the drop
    /// zone that of several documents.
    QImage appletSearchImage();
    QImage appletDropImage();
    /// The image that a value names. Null for missing value and for a name without an image. The default for nil and for values that cannot
    /// name one.
    QImage _imageFromValue(const QXOSAIDRef& value, const QImage& defaultImage);
    bool updaterMayCheckForUpdates() override;
    bool updaterShouldPromptForPermissionToCheckForUpdates() override;
    bool updaterIsOutOfTurn() override { return isEndingWithError(); }
    void updaterWillInstallUpdate() override;
    void updaterWillRelaunchApplication() override;
    int updaterCallDepth() override { return hookDepth(); }
    void updaterStopsCall(int depth) override { stopHook(depth); }

    // Lifecycle
    void runMainScript();
    void stopRunningScript();
    void applicationOpenFiles(const QStringList& filenames) override;
    void _runIdleHandler();
    void _runQuitHandler();
    /// Tells whether a dialog command shows a panel. An end that was put off because of the panel follows when the panel has gone.
    void setDisplayingPanel(bool displaying);
    NSApplicationTerminateReply applicationShouldTerminate() override;
    /// Cancels dialogs, which refuse any other end, and ends as a quit does.
    bool applicationReceivedSignal() override;
    void applicationWaitsWoken() override;
    bool isDecidingTermination() const override { return runningQuitHandler(); }
    bool applicationShouldTerminateAfterLastWindowClosed() override;
    /// Ends the applet by its own wish. While a dialog is up, which refuses every end, the wish is kept until the dialog has gone.
    void terminate();
    void _windowWillClose(const NSNotification& notification);
    void _displayRuntimeError(const QXOSAErrorInfoRef& error);
    bool respondsToAction(const QString& action) const override;
    void performAction(const QString& action) override;
    bool validateMenuItem(const NSMenuItem& item) override;

    // Progress
    /// Sends new progress to the window, for which it waits for the main thread. Called on the thread that runs the script.
    void scriptDidYield() override;
    void scriptWaitsOnMainThread() override { hookDidYield(); }
    std::optional<bool> isMainThreadScriptCancelled() override;
    /// True while a hook is under way, so that the user can go on: type another search, stop, quit.
    bool servesMainThreadEvents() override { return mHook != nullptr; }
    void _progressDidChange(const NSNotification& notification);
    /// Called before a dialog command shows something.
    void willDisplaySheet() { showProgressWhileResponding(); }

    // Script queue
    /// Called on the main thread with the handler's result and its error, both of which may be nil.
    using Completion = std::function<void(const QXOSAIDRef& result, const QXOSAErrorInfoRef& error)>;
    /// Queues one execution: of the event, or of the run handler when it is nil. The completion may be empty; the suspension ID, when there
    /// is one, names the incoming event that the outcome answers.
    void _respondToEventInBackground(const NSAppleEventDescriptorRef& event, Completion completion = {},
                                     const NSAppleEventManagerSuspensionID& eventSuspendsionID = {});
    void _handleSubroutineCallEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent);
    /// Whether a handler is running or waiting for its turn; one that has passed its event on to the application does not count.
    bool _isRespondingToScript();
    /// Waits at the end of the process for the script, and then for the events that it sent, each for `atMost`. False when one of them is
    /// still busy. Nothing that is waited for may need the main thread (MainThread::close()).
    static bool waitForScripts(std::chrono::milliseconds atMost);
    /// Drops waiting executions. Their callers are answered by NSAppleEventManager::answerSuspendedEvents().
    static void dropWaitingScripts();
    /// Lets no waiting execution begin until releaseWaitingScripts().
    static void holdWaitingScripts();
    static void releaseWaitingScripts();
    /// Stops the running execution and drops waiting ones.
    static void cancelScripts();

private:
    struct Execution;
    struct OpenRequest;
    class HookCall;

    bool hasHandler(bool (QXOSAID::*query)());
    static bool ask(const QXOSAIDRef& script, bool (QXOSAID::*query)());
    void prepareMainScript();
    /// Calls a hook. nullopt when the script has no such handler or the script layer fails; false after a script error, which is then
    /// shown.
    std::optional<bool> askHook(const QString& handlerName, const std::vector<NSAppleEventDescriptorRef>& parameters = {});
    /// Serves the user while a script yields or waits on the main thread, and offers to stop a hook that takes long.
    void hookDidYield();
    void offerToStopHook();
    /// Asks the script about the files of the requests in their order, for about `seconds`; the rest follows in later turns of the event
    /// loop.
    void judgeFilesToOpen(double seconds);
    void openAcceptedFiles(const OpenRequest& request);
    void refuseFiles(const OpenRequest& request);
    void afterOpening();
    /// Refuses all files that wait for the script's judgement; false when there are none.
    bool stopJudgingFiles();
    QString prompt(const QString& propertyName, const QString& defaultKey);
    QImage imageProperty(const QString& propertyName, const QImage& defaultImage);
    /// A value to set a property of the script to. Setting one to a descriptor without bytes, such as an empty text, would remove it.
    static QXOSAIDRef valueOf(const NSAppleEventDescriptorRef& descriptor, const QXOSAIDRef& script);
    void registerOutsideEvents();
    void registerScriptEvents();
    void watchProperties();
    void removeOutsideEvents();
    void handleOutsideEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& reply);
    void handleScriptEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& reply);
    NSAppleEventDescriptorRef valueOfProperty(FourCharCode code, const QString& name);
    bool setProperty(FourCharCode code, const QString& name, const NSAppleEventDescriptorRef& value);
    void applyUpdaterSetting();
    void createWindowController(bool toOpenFiles);
    Completion afterLaunchRun();
    void waitToBeAsked();
    void awaitWindow();
    void showHiddenWindow();
    void takeTestApplet();
    /// Stops the script at its next callback.
    void cancelScript();
    bool holds(AppletEnd::Fact fact) override;
    void perform(AppletEnd::Act act) override;
    void stopHandlerForQuit();
    void scheduleIdleHandler(std::int64_t afterSeconds);
    void performIdleHandlerAt(double time);
    void setAppletIsQuitting(bool quitting, const QXOSAIDRef& script);
    void showProgressPane();
    void showProgressWhileResponding();
    std::optional<QVariantMap> readProgress();

    void execute(const std::shared_ptr<Execution>& execution);
    void finish(const std::shared_ptr<Execution>& execution);
    void finishFatalError(const std::shared_ptr<Execution>& execution);
    /// Answers an incoming event. Any thread, unless there is a completion.
    static void finishIncomingCall(const Execution& execution);
    void finishOwnEvent(const Execution& execution);
    void finishAfterTryToQuit(const Execution& execution);
    /// Does what is left to do on the main thread when a caller has its answer.
    void callHasEnded(const Execution& execution);
    void noteActivity();
    /// Tells AppletEnd of a handler that has ended after a quit had come; answers the act that followed.
    AppletEnd::Act tellOfHandlersEnd(const Execution& execution);
    void finishStayOpen(bool afterRunHandler);
    void showLastPaneWithoutStop();
    /// Shows what stands between runs: a pane, no window, or an idle window when the user has brought it up.
    void showLastPane();

    QString localized(const QString& key) const;
    RuntimeAlert runtimeErrorAlert(const QXOSAErrorInfo& error) const;
    /// Shows an alert as a sheet when the window is visible, otherwise modal.
    void showAlert(const RuntimeAlert& alert, std::function<void()> afterwards);
    /// The one window controller, or one without window before there is one.
    WindowController& windowController() const;

    AppDelegateParts mParts;
    AppletEnd mEnd{*this, *mParts.performs};
    QXOSAIDRef mMainGenericScript;
    QXOSAIDRef mMainScript;
    bool mShowingRuntimeError = false;
    bool mRunIsDue = false; // launched for an event in place of the run, which has not been asked for yet
    std::vector<std::pair<AEEventClass, AEEventID>> mScriptEvents; // commands of the script that other applications can send
    bool mWasAsked = false;                                        // another application has sent an event
    double mIdleCallDue = 0;        // time for which the last idle call was planned, by the clock of the performs
    double mAwaitedUntil = 0;       // until this time, by the same clock, the user waits for a first window; 0: not at all
    int mOwnExecutions = 0;         // queued executions that are not calls from outside
    bool mKeepsWindow = false;      // the user has brought up an idle window and has not closed it
    bool mPaneIsForCalls = false;   // only calls from outside have brought the progress pane up
    bool mWasResponding = false;    // _isRespondingToScript() when the activity was last announced
    bool mStoppedByClosing = false; // the window is closing, and that has stopped the script
    std::deque<std::shared_ptr<OpenRequest>> mFilesToJudge; // the first is being judged
    bool mIsJudgingFiles = false;                           // judgeFilesToOpen() is running further up on the stack
    int mJudgingDepth = 0;                                  // the number of hooks that were under way before the one that judges files
    HookCall* mHook = nullptr;                              // the innermost of the hooks on the stack
    bool mIsDragging = false;                               // something is dragged over a window of the applet
    double mHookBegin = 0;                                  // time when the outermost hook began, by the clock of the performs
    bool mHookWasStopped = false;                           // the hook that ended last was stopped
    std::recursive_mutex mObjectLock;                       // guards scriptDidYield(); the main thread only ever tries to take it
};

} // namespace quoddle

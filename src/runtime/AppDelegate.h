// SPDX-License-Identifier: MIT
// AppDelegate: the spine of the applet shell. It loads the applet's script, decides what of it runs when, and when the process ends. One
// class, a file for each duty: configuration and scripts (AppDelegate.cpp), +Launch, +Lifecycle (run, idle, quit), +End (what AppletEnd
// decides), +OpenFiles, +ScriptQueue (execution and its end), +OutsideEvents (run, get, set from other applications), +Hooks (questions to
// the script), +FileTypes (what a droplet takes), +Progress, +Alerts. One decision: everything is decided on the main thread, which never
// waits for the script; only executions and scriptDidYield() run on the script queue's thread. All functions are the main thread's unless
// they say otherwise.
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

/// Posted on the main thread with the delegate as object; user information: "totalSteps", "steps" (int), "description",
/// "additionalDescription" (text).
inline const QString ProgressChangedNotification = QStringLiteral("ProgressChangedNotification");

/// Posted on the main thread with the delegate as object: a handler has begun to run or to wait for its turn, or the last one has ended.
inline const QString ScriptActivityChangedNotification = QStringLiteral("ScriptActivityChangedNotification");

/// As the first of the files to open: the shell works on an applet to be tested, instead of on the one that it was started as.
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

    /// The outlet to the menu item for updates; null when the menu has none (any more).
    NSMenuItem* checkForUpdatesMenuItem() const;

    // Configuration and scripts
    bool isStayOpenScript() const;
    bool showStartupScreen() const;
    /// The script as loaded by the generic component: never nil once that component is there, but empty when loading failed.
    QXOSAIDRef mainGenericScript();
    /// The same script on its real component; nil when there is none. The first call is the main thread's, later ones any thread's.
    QXOSAIDRef mainScript();
    /// All false while the script's component is resuming.
    bool hasOpenHandler() { return hasHandler(&QXOSAID::hasOpenHandler); }
    bool hasIdleHandler() { return hasHandler(&QXOSAID::hasIdleHandler); }
    bool hasRunHandler() { return hasHandler(&QXOSAID::hasRunHandler); }
    bool hasQuitHandler() { return hasHandler(&QXOSAID::hasQuitHandler); }

    // Launch
    void applicationWillFinishLaunching() override;
    void applicationDidFinishLaunching() override;
    /// Runs the script when that is still to come, because the launch was for something else.
    void applicationWillReopen() override;
    /// Shows the window that stands between runs, unless something is running.
    void applicationWillActivate(bool isAskedByOther) override;
    void _setupApplication(bool toOpenFiles);
    /// Whether a window that appears now is the one that the user has launched the applet for: the first one, soon after a launch. It
    /// takes the keyboard. Every other one appears by itself.
    bool takeAwaitedWindow();
    /// Replaces every "APPNAME" in the titles of the menu and of those below it.
    static void _setAppName(const QString& name, NSMenu& inMenu);

    // File types
    /// Reads which files the bundle takes and sets the two predicates; without a declaration, or with one for everything, there are none.
    void _loadExtAndUTIPrefs();
    /// Each list has at least one entry.
    void _predsForExtensions(const QStringList& extensions);
    void _predsForUTIs(const QStringList& identifiers);
    void _predsForUTIs(const QStringList& identifiers, const QStringList& andExtensions);

    // Hooks: handlers and properties by which a script shapes the applet. A script error in a handler is shown, which ends the applet.
    /// "appletfileisacceptable"; without it every file is, for a script with an open handler. After a script error: false.
    bool isFileAcceptable(const QString& path);
    /// An error of the script is being shown, and the applet ends when the user has seen it.
    bool isEndingWithError() const { return mShowingRuntimeError; }
    /// Whether the script has a say in which files are acceptable, and may take its time for it.
    bool asksAboutFiles();
    /// The hook that has ended last was stopped; not so after isFileAcceptable() for a script without that hook.
    bool hookWasStopped() const { return mHookWasStopped; }
    /// How many hooks are under way: while one of them waits, what the user does may lead to the next.
    int hookDepth() const;
    /// Stops the hook that began when so many others were under way. Without it nothing happens.
    void stopHook(int depth);
    /// While something is dragged over a window no panel offers to stop a hook: under the pointer it would end the drag, and with the drag
    /// the hook. Leaving the window stops the hook as well.
    void setDragging(bool dragging) { mIsDragging = dragging; }
    /// "appletsearchname" and "appletdropname", else the localised "DefaultFindFilesPrompt" and "DefaultDropFilesPrompt".
    QString appletSearchPrompt();
    QString appletDropPrompt();
    /// "appletsearchimage" and "appletdropimage". Null: no image. Without the property: none, and that of several documents.
    QImage appletSearchImage();
    QImage appletDropImage();
    /// Nil, or a value that stands for no image: the default. Missing value, or a name without an image: null.
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
    /// An end that was put off because of the panel comes when the panel has gone.
    void setDisplayingPanel(bool displaying);
    NSApplicationTerminateReply applicationShouldTerminate() override;
    /// Takes dialogs away, which refuse any other end, and ends as a quit does.
    bool applicationReceivedSignal() override;
    void applicationWaitsWoken() override;
    bool isDecidingTermination() const override { return runningQuitHandler(); }
    bool applicationShouldTerminateAfterLastWindowClosed() override;
    /// The applet's own wish: while a dialog is up, which refuses everybody, it is kept until the dialog has gone.
    void terminate();
    void _windowWillClose(const NSNotification& notification);
    void _displayRuntimeError(const QXOSAErrorInfoRef& error);
    bool respondsToAction(const QString& action) const override;
    void performAction(const QString& action) override;
    bool validateMenuItem(const NSMenuItem& item) override;

    // Progress
    /// The thread that runs the script; waits for the main thread when there is something new.
    void scriptDidYield() override;
    void scriptWaitsOnMainThread() override { hookDidYield(); }
    std::optional<bool> isMainThreadScriptCancelled() override;
    /// While a hook is under way the user can go on: type another search, stop, quit.
    bool servesMainThreadEvents() override { return mHook != nullptr; }
    void _progressDidChange(const NSNotification& notification);
    /// Called before a dialog command shows something.
    void willDisplaySheet() { showProgressWhileResponding(); }

    // Script queue
    /// Called on the main thread with the handler's result and its error, both may be nil.
    using Completion = std::function<void(const QXOSAIDRef& result, const QXOSAErrorInfoRef& error)>;
    /// Queues one execution: of the event, or of the run handler when it is nil. The completion may be empty; the suspension ID, when there
    /// is one, names the incoming event that the outcome answers.
    void _respondToEventInBackground(const NSAppleEventDescriptorRef& event, Completion completion = {},
                                     const NSAppleEventManagerSuspensionID& eventSuspendsionID = {});
    void _handleSubroutineCallEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent);
    /// A handler is running or waiting to; one that has passed its event on to the application does not count.
    bool _isRespondingToScript();
    /// For the end of the process: waits for so long at most, for the script and then for the events that it sent; false when one of them
    /// is still busy. Nothing it waits for may need the main thread (MainThread::close()).
    static bool waitForScripts(std::chrono::milliseconds atMost);
    /// What waits does not run any more, and its callers are left to NSAppleEventManager::answerSuspendedEvents().
    static void dropWaitingScripts();
    /// Nothing begins behind what runs now, until it is released.
    static void holdWaitingScripts();
    static void releaseWaitingScripts();
    /// Stops what runs and drops what waits.
    static void cancelScripts();

private:
    struct Execution;
    struct OpenRequest;
    class HookCall;

    bool hasHandler(bool (QXOSAID::*query)());
    static bool ask(const QXOSAIDRef& script, bool (QXOSAID::*query)());
    void prepareMainScript();
    /// Nothing when the script has no such handler or the script layer fails; false after a script error, which is then shown.
    std::optional<bool> askHook(const QString& handlerName, const std::vector<NSAppleEventDescriptorRef>& parameters = {});
    /// While a script yields or waits on the main thread: serves the user, and offers to stop a hook that takes long.
    void hookDidYield();
    void offerToStopHook();
    /// Asks the script about the files of the requests in their order, for so long at least; what is left comes with a later turn.
    void judgeFilesToOpen(double seconds);
    void openAcceptedFiles(const OpenRequest& request);
    void refuseFiles(const OpenRequest& request);
    void afterOpening();
    /// False when no files wait for the script's judgement.
    bool stopJudgingFiles();
    QString prompt(const QString& propertyName, const QString& defaultKey);
    QImage imageProperty(const QString& propertyName, const QImage& defaultImage);
    /// For a property of the script: to set one to a descriptor without bytes, as an empty text is, would take it away.
    static QXOSAIDRef valueOf(const NSAppleEventDescriptorRef& descriptor, const QXOSAIDRef& script);
    void registerOutsideEvents();
    void removeOutsideEvents();
    void handleOutsideEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& reply);
    NSAppleEventDescriptorRef valueOfProperty(FourCharCode code, const QString& name);
    bool setProperty(FourCharCode code, const QString& name, const NSAppleEventDescriptorRef& value);
    void applyUpdaterSetting();
    void createWindowController(bool toOpenFiles);
    Completion afterLaunchRun();
    void waitToBeAsked();
    void awaitWindow();
    void showHiddenWindow();
    void takeTestApplet();
    /// Stops what the script is doing at its next callback.
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
    /// Any thread, unless there is a completion.
    static void finishIncomingCall(const Execution& execution);
    void finishOwnEvent(const Execution& execution);
    void finishAfterTryToQuit(const Execution& execution);
    /// What is left to do on the main thread when a caller has its answer.
    void callHasEnded(const Execution& execution);
    void noteActivity();
    /// Tells AppletEnd of a handler that has ended after a quit had come; answers what followed.
    AppletEnd::Act tellOfHandlersEnd(const Execution& execution);
    void finishStayOpen(bool afterRunHandler);
    void showLastPaneWithoutStop();
    /// What stands between runs: a pane, no window, or one that shows nothing, when the user has brought it up.
    void showLastPane();

    QString localized(const QString& key) const;
    RuntimeAlert runtimeErrorAlert(const QXOSAErrorInfo& error) const;
    /// As a sheet when the window is visible, else modal.
    void showAlert(const RuntimeAlert& alert, std::function<void()> afterwards);
    /// The one window controller, or one without window before there is one.
    WindowController& windowController() const;

    AppDelegateParts mParts;
    AppletEnd mEnd{*this, *mParts.performs};
    QXOSAIDRef mMainGenericScript;
    QXOSAIDRef mMainScript;
    bool mShowingRuntimeError = false;
    bool mRunIsDue = false;         // launched for an event in place of the run, which has not been asked for yet
    bool mWasAsked = false;         // something, by another application
    double mIdleCallDue = 0;        // when the last idle call was to come, by the clock of the performs
    double mAwaitedUntil = 0;       // by that clock: how long a first window is what the user waits for; 0: none is
    int mOwnExecutions = 0;         // queued, and no calls from outside
    bool mKeepsWindow = false;      // the user has brought up one that stands for the applet alone, until he closes it
    bool mPaneIsForCalls = false;   // calls from outside alone have brought the progress pane up
    bool mWasResponding = false;    // when the activity was last announced
    bool mStoppedByClosing = false; // the window is closing, and that has stopped the script
    std::deque<std::shared_ptr<OpenRequest>> mFilesToJudge; // the first is being judged
    bool mIsJudgingFiles = false;                           // further up on the stack
    int mJudgingDepth = 0;                                  // of the hooks that judge them
    HookCall* mHook = nullptr;                              // the innermost of the hooks on the stack
    bool mIsDragging = false;                               // over a window of the applet
    double mHookBegin = 0;                                  // of the outermost one, by the clock of the performs
    bool mHookWasStopped = false;                           // the last one that has ended
    std::recursive_mutex mObjectLock;                       // scriptDidYield's; the main thread only ever tries it
};

} // namespace quoddle

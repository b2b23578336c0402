// SPDX-License-Identifier: MIT
// The launch: one-time set-up, and the decision what the applet starts with.
#include "runtime/AppDelegate.h"

namespace quoddle {

using namespace Qt::StringLiterals;

void AppDelegate::applicationWillFinishLaunching() {
    const auto handler = [this](const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& reply) {
        _handleSubroutineCallEvent(event, reply);
    };
    // Registered twice, as it always was; the second registration replaces the first.
    NSAppleEventManager::sharedAppleEventManager().setEventHandler(handler, "ascr"_4cc, "psbr"_4cc);
    NSAppleEventManager::sharedAppleEventManager().setEventHandler(handler, "ascr"_4cc, "psbr"_4cc);
    registerOutsideEvents();
}

void AppDelegate::_setAppName(const QString& name, NSMenu& inMenu) {
    for (const auto& item : inMenu.itemArray()) {
        item->setTitle(QString(item->title()).replace("APPNAME"_L1, name));
        if (item->submenu())
            _setAppName(name, *item->submenu());
    }
}

void AppDelegate::applyUpdaterSetting() {
    if (mainBundle()->infoDictionary().contains(u"SUFeedURL"_s) && mParts.updater)
        mParts.updater->setDelegate(this);
    else if (NSMenuItem* item = checkForUpdatesMenuItem())
        item->menu()->removeItem(item);
}

void AppDelegate::createWindowController(bool toOpenFiles) {
    const bool droplet = hasOpenHandler();
    const auto controller = mParts.instantiateController(droplet ? u"dropletWindowController"_s : u"appletWindowController"_s);
    controller->setMainBundle(mainBundle());
    if (droplet && toOpenFiles)
        controller->showProgressViewController();
    else if (showStartupScreen())
        controller->showStartupViewController();
    else if (droplet)
        controller->showLastViewController();
    if (droplet)
        controller->showWindow();
}

void AppDelegate::_setupApplication(bool toOpenFiles) {
    if (isInitialized())
        return;
    setIdleSeconds(1);
    if (!mParts.isLaunchedByOther && !mParts.isLaunchedInsteadOfRun)
        awaitWindow();
    if (!mainBundle())
        setMainBundle(NSBundle::mainBundle());
    if (const auto menu = mParts.application->mainMenu())
        _setAppName(mainBundle()->name(), *menu);
    applyUpdaterSetting();
    const QVariant standard = mainBundle()->infoDictionary().value(u"KVBUseStandardOSAXEN"_s);
    const bool useStandard = isNumber(standard) && boolValue(standard);
    if (!useStandard && mParts.installOSAXEventHandlers)
        mParts.installOSAXEventHandlers(*this);
    _loadExtAndUTIPrefs();
    createWindowController(toOpenFiles);
    auto& center = NSNotificationCenter::defaultCenter();
    center.addObserver(
        this, [this](const NSNotification& n) { _progressDidChange(n); }, ProgressChangedNotification);
    center.addObserver(
        this, [this](const NSNotification& n) { _windowWillClose(n); }, NSWindowWillCloseNotification);
    registerScriptEvents();
    setInitialized(true);
}

void AppDelegate::awaitWindow() {
    constexpr double kPatience = 2; // seconds; a user who has launched something does nothing else for about so long
    mAwaitedUntil = mParts.performs->now() + kPatience;
}

bool AppDelegate::takeAwaitedWindow() {
    return mParts.performs->now() < std::exchange(mAwaitedUntil, 0);
}

void AppDelegate::applicationDidFinishLaunching() {
    const auto files = filenamesToOpen();
    _setupApplication(files && !files->isEmpty());
    if (hasOpenHandler() && files) {
        applicationOpenFiles(*files);
        setFilenamesToOpen({});
        return;
    }
    if (showStartupScreen())
        return; // the Run button of the startup pane starts the script
    if (hasRunHandler()) {
        if (scriptStarted())
            return;
        setScriptStarted(true);
        if (mParts.isLaunchedInsteadOfRun)
            waitToBeAsked();
        else
            _respondToEventInBackground(nullptr, afterLaunchRun());
        return;
    }
    if (hasIdleHandler() && isStayOpenScript()) {
        setScriptStarted(true);
        scheduleIdleHandler(idleSeconds());
        return;
    }
    if (!hasOpenHandler()) {
        mEnd.happened(AppletEnd::Happening::workDone); // there is nothing for the script to do
        return;
    }
    setScriptStarted(true); // a droplet waits for files
}

AppDelegate::Completion AppDelegate::afterLaunchRun() {
    return [this](const QXOSAIDRef&, const QXOSAErrorInfoRef&) {
        if (!isStayOpenScript() && !hasOpenHandler())
            mEnd.happened(AppletEnd::Happening::workDone);
    };
}

/// Waits for the event for which another application has launched this applet. An applet that would have ended after its run, and has
/// nothing to show, ends when no event comes.
void AppDelegate::waitToBeAsked() {
    constexpr double kPatience = 120; // seconds; a sender waits for a reply for as long
    mRunIsDue = true;
    if (isStayOpenScript() && hasIdleHandler())
        scheduleIdleHandler(idleSeconds());
    if (!isStayOpenScript() && !hasOpenHandler())
        mParts.performs->perform(
            this, u"waitToBeAsked"_s,
            [this] {
                if (!mWasAsked)
                    mEnd.happened(AppletEnd::Happening::workDone);
            },
            kPatience);
}

void AppDelegate::applicationWillReopen(bool isAskedByOther) {
    awaitWindow();
    if (std::exchange(mRunIsDue, false)) {
        mWasAsked = true;
        return _respondToEventInBackground(nullptr, afterLaunchRun());
    }
    showHiddenWindow();
    // Before the Run button of the startup pane the script does nothing.
    const QXOSAIDRef script = isAskedByOther && scriptStarted() && mEnd.state() != AppletEnd::State::finished ? mainScript() : nullptr;
    if (script && script->hasReopenHandler()) // also while the script continues a command, when it seems to have no handlers
        _respondToEventInBackground(NSAppleEventDescriptor::appleEventWithEventClass("aevt"_4cc, "rapp"_4cc), afterLaunchRun());
}

// Shows the window for other applications. A running script activates its own application before it asks something, and wants no window for
// that.
void AppDelegate::applicationWillActivate(bool isAskedByOther) {
    if (isAskedByOther || !_isRespondingToScript())
        showHiddenWindow();
}

/// Shows the window when it was closed, or stays hidden between the script's runs. It is the user's only way to stop or end such an applet.
void AppDelegate::showHiddenWindow() {
    if (!isInitialized() || mEnd.state() == AppletEnd::State::finished || isDisplayingPanel() || windowController().isWindowVisible())
        return;
    mKeepsWindow = !showStartupScreen();
    if (_isRespondingToScript())
        windowController().showProgressViewController();
    else
        showLastPane();
}

} // namespace quoddle

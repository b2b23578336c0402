// SPDX-License-Identifier: MIT
// The launch: one-time set-up, and the decision what the applet starts with.
#include "runtime/AppDelegate.h"

namespace quoddle {

using namespace Qt::StringLiterals;

void AppDelegate::applicationWillFinishLaunching() {
    const auto handler = [this](const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& reply) {
        _handleSubroutineCallEvent(event, reply);
    };
    // Twice, as it always was: the second registration replaces the first.
    NSAppleEventManager::sharedAppleEventManager().setEventHandler(handler, "ascr"_4cc, "psbr"_4cc);
    NSAppleEventManager::sharedAppleEventManager().setEventHandler(handler, "ascr"_4cc, "psbr"_4cc);
}

void AppDelegate::_setAppName(const QString& name, NSMenu& inMenu) {
    for (const auto& item : inMenu.itemArray()) {
        item->setTitle(QString(item->title()).replace("APPNAME"_L1, name));
        if (item->submenu())
            _setAppName(name, *item->submenu());
    }
}

void AppDelegate::applyUpdaterSetting() {
    if (mMainBundle->infoDictionary().contains(u"SUFeedURL"_s) && mParts.updater)
        mParts.updater->setDelegate(this);
    else if (NSMenuItem* item = checkForUpdatesMenuItem())
        item->menu()->removeItem(item);
}

void AppDelegate::createWindowController(bool toOpenFiles) {
    const bool droplet = hasOpenHandler();
    const auto controller = mParts.instantiateController(droplet ? u"dropletWindowController"_s : u"appletWindowController"_s);
    controller->setMainBundle(mMainBundle);
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
    if (mInitialized)
        return;
    mIdleSeconds = 1;
    if (!mMainBundle)
        mMainBundle = NSBundle::mainBundle();
    if (const auto menu = mParts.application->mainMenu())
        _setAppName(mMainBundle->infoDictionary().value(u"CFBundleName"_s).toString(), *menu);
    applyUpdaterSetting();
    const QVariant standard = mMainBundle->infoDictionary().value(u"KVBUseStandardOSAXEN"_s);
    const bool useStandard = isNumber(standard) && boolValue(standard);
    if (!useStandard && mParts.installOSAXEventHandlers)
        mParts.installOSAXEventHandlers(*this);
    if (mParts.loadExtAndUTIPrefs)
        mParts.loadExtAndUTIPrefs(*this);
    createWindowController(toOpenFiles);
    auto& center = NSNotificationCenter::defaultCenter();
    center.addObserver(
        this, [this](const NSNotification& n) { _progressDidChange(n); }, ProgressChangedNotification);
    center.addObserver(
        this, [this](const NSNotification& n) { _windowWillClose(n); }, NSWindowWillCloseNotification);
    mInitialized = true;
}

void AppDelegate::applicationDidFinishLaunching() {
    _setupApplication(mFilenamesToOpen && !mFilenamesToOpen->isEmpty());
    if (hasOpenHandler() && mFilenamesToOpen) {
        applicationOpenFiles(*mFilenamesToOpen);
        mFilenamesToOpen.reset();
        return;
    }
    if (showStartupScreen())
        return; // its Run button starts the script
    if (hasRunHandler()) {
        if (mScriptStarted)
            return;
        mScriptStarted = true;
        _respondToEventInBackground(nullptr, [this](const QXOSAIDRef&, const QXOSAErrorInfoRef&) {
            if (!isStayOpenScript() && !hasOpenHandler())
                terminate();
        });
        return;
    }
    if (hasIdleHandler() && isStayOpenScript()) {
        mScriptStarted = true;
        scheduleIdleHandler(mIdleSeconds);
        return;
    }
    if (!hasOpenHandler()) {
        terminate(); // a script with nothing to do
        return;
    }
    mScriptStarted = true; // a droplet waits for files
}

} // namespace quoddle

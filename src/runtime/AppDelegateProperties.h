// SPDX-License-Identifier: MIT
// The plain state of the delegate, which is remembered between one decision and the next. It decides nothing.
// Main thread only, except for functions whose comments say otherwise.
#pragma once

#include "engine/QXOSAID.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/predicate/NSPredicate.h"
#include "runtime/WindowController.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

#include <QStringList>
#include <QVariantMap>

namespace quoddle {

class AppDelegateProperties {
public:
    /// Whether a dialog command is showing a panel; quitting is refused meanwhile. Any thread.
    bool isDisplayingPanel() const { return mDisplayingPanel; }
    void setDisplayingPanel(bool displaying) { mDisplayingPanel = displaying; }
    /// Whether a quit was asked for while a handler ran, or the user has closed the main window.
    bool applicationTriedToQuit() const { return mApplicationTriedToQuit; }
    void setApplicationTriedToQuit(bool tried) { mApplicationTriedToQuit = tried; }
    /// Whether the one-time set-up has been done.
    bool isInitialized() const { return mInitialized; }
    void setInitialized(bool initialized) { mInitialized = initialized; }
    bool userClosedWindow() const { return mUserClosedWindow; }
    void setUserClosedWindow(bool closed) { mUserClosedWindow = closed; }
    /// Whether the user has pressed Stop. Only recorded; nothing is decided by it.
    bool userStoppedScript() const { return mUserStoppedScript; }
    void setUserStoppedScript(bool stopped) { mUserStoppedScript = stopped; }
    /// Whether the script's first activity has been started. The runtime never clears it.
    bool scriptStarted() const { return mScriptStarted; }
    void setScriptStarted(bool started) { mScriptStarted = started; }
    bool runningQuitHandler() const { return mRunningQuitHandler; }
    void setRunningQuitHandler(bool running) { mRunningQuitHandler = running; }
    /// The window's controller, which sets itself when its window is loaded; null before.
    std::shared_ptr<WindowController> mainWindowController() const { return mMainWindowController; }
    void setMainWindowController(std::shared_ptr<WindowController> controller) { mMainWindowController = std::move(controller); }
    /// The last snapshot sent to the window; nullopt before the first. Any thread.
    std::optional<QVariantMap> currentProgress() const { return locked(mCurrentProgress); }
    void setCurrentProgress(std::optional<QVariantMap> progress) { setLocked(mCurrentProgress, std::move(progress)); }
    /// The condition on a dropped file's resource values; null: every file.
    NSPredicateRef dropPredicate() const { return mDropPredicate; }
    void setDropPredicate(NSPredicateRef predicate) { mDropPredicate = std::move(predicate); }
    /// The condition on the metadata of a file that is searched for; null: every file. Any thread.
    NSPredicateRef spotlightPredicate() const { return locked(mSpotlightPredicate); }
    void setSpotlightPredicate(NSPredicateRef predicate) { setLocked(mSpotlightPredicate, std::move(predicate)); }
    /// The applet bundle. Any thread.
    std::shared_ptr<NSBundle> mainBundle() const { return locked(mMainBundle); }
    void setMainBundle(std::shared_ptr<NSBundle> bundle) { setLocked(mMainBundle, std::move(bundle)); }
    /// The script's AppleScript object; nil until it was needed. Any thread.
    QXOSAIDRef asObj() const { return locked(mAsObj); }
    void setAsObj(QXOSAIDRef asObj) { setLocked(mAsObj, std::move(asObj)); }
    /// The files received before the script may run; nullopt, as opposed to an empty list, when there were none. Any thread.
    std::optional<QStringList> filenamesToOpen() const { return locked(mFilenamesToOpen); }
    void setFilenamesToOpen(std::optional<QStringList> filenames) { setLocked(mFilenamesToOpen, std::move(filenames)); }
    /// The delay before the next idle call, in seconds.
    std::int64_t idleSeconds() const { return mIdleSeconds; }
    void setIdleSeconds(std::int64_t seconds) { mIdleSeconds = seconds; }

private:
    template<class T>
    T locked(const T& value) const {
        std::lock_guard lock(mMutex);
        return value;
    }
    template<class T>
    void setLocked(T& value, T newValue) {
        std::lock_guard lock(mMutex);
        std::swap(value, newValue);
    }

    mutable std::mutex mMutex;
    std::optional<QVariantMap> mCurrentProgress;
    NSPredicateRef mDropPredicate;
    NSPredicateRef mSpotlightPredicate;
    std::shared_ptr<NSBundle> mMainBundle;
    QXOSAIDRef mAsObj;
    std::optional<QStringList> mFilenamesToOpen;
    std::shared_ptr<WindowController> mMainWindowController;
    std::int64_t mIdleSeconds = 0;
    std::atomic<bool> mDisplayingPanel = false;
    bool mApplicationTriedToQuit = false;
    bool mInitialized = false;
    bool mUserClosedWindow = false;
    bool mUserStoppedScript = false;
    bool mScriptStarted = false;
    bool mRunningQuitHandler = false;
};

} // namespace quoddle

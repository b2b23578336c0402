// SPDX-License-Identifier: MIT
// The interfaces between the application framework and its delegate, the one object that decides for the application: what the framework
// asks and tells the delegate, and what the delegate may ask of the framework. Neither needs widgets, so that delegates need not see any.
#pragma once

#include <memory>

#include <QString>
#include <QStringList>

namespace quoddle {

class NSMenu;
class NSMenuItem;

/// Posted with the window as object while the user closes it, before it disappears.
inline const QString NSWindowWillCloseNotification = QStringLiteral("NSWindowWillCloseNotification");
/// Posted with the application as object, after the delegate's applicationDidFinishLaunching().
inline const QString NSApplicationDidFinishLaunchingNotification = QStringLiteral("NSApplicationDidFinishLaunchingNotification");
/// Posted with the application as object, after the delegate's applicationWillTerminate().
inline const QString NSApplicationWillTerminateNotification = QStringLiteral("NSApplicationWillTerminateNotification");
/// Posted with the application as object when it goes on although it had been asked to end; the decision may have taken a while.
inline const QString NSApplicationDidRefuseTerminationNotification = QStringLiteral("NSApplicationDidRefuseTerminationNotification");

/// Posted by the delegate when the session ends. Nobody will answer a question any more, so open questions give up.
inline const QString SessionWillEndNotification = QStringLiteral("SessionWillEndNotification");

enum class NSApplicationTerminateReply { cancel = 0, now = 1, later = 2 };
/// How a request to open files ended.
enum class NSApplicationDelegateReply { success = 0, cancel = 1, failure = 2 };

/// All calls come on the main thread.
class NSApplicationDelegate {
public:
    virtual ~NSApplicationDelegate() = default;

    virtual void applicationWillFinishLaunching() {}
    virtual void applicationDidFinishLaunching() {}
    /// Opens files: absolute paths, at least one. Comes before applicationDidFinishLaunching() for the files of the launch. The delegate
    /// answers with NSApplication::replyToOpenOrPrint(), now or later.
    virtual void applicationOpenFiles(const QStringList& filenames) = 0;
    /// After `later` the delegate answers with NSApplication::replyToApplicationShouldTerminate().
    virtual NSApplicationTerminateReply applicationShouldTerminate() { return NSApplicationTerminateReply::now; }
    /// Asked after `cancel`: whether the decision is still open, because the delegate is finding it out. It then calls terminate() itself,
    /// or SharedApplication::terminationWasRefused().
    virtual bool isDecidingTermination() const { return false; }
    /// Called after SIGTERM, SIGINT or SIGHUP. True when the delegate itself ends the application; else terminate() follows.
    virtual bool applicationReceivedSignal() { return false; }
    virtual void applicationWillTerminate() {}
    /// wakeWaits() was called: whatever the application waits for may have happened.
    virtual void applicationWaitsWoken() {}
    /// The application was launched again while it runs, or "reopen" was sent, by another process or by the application's own script; the
    /// windows come to the front after this call.
    virtual void applicationWillReopen(bool isAskedByOther) { (void)isAskedByOther; }
    /// "activate" was sent, by another process or by the application's own script; the windows come to the front after this call.
    virtual void applicationWillActivate(bool isAskedByOther) { (void)isAskedByOther; }
    /// Asked when the user has closed the last window.
    virtual bool applicationShouldTerminateAfterLastWindowClosed() { return false; }

    /// Whether the delegate performs the menu action itself; only then is it asked whether the action's items are enabled.
    virtual bool respondsToAction(const QString& action) const {
        (void)action;
        return false;
    }
    virtual void performAction(const QString& action) { (void)action; }
    virtual bool validateMenuItem(const NSMenuItem& item) {
        (void)item;
        return true;
    }
};

/// The functions that the framework (appkit/NSApplication.h) offers to a delegate. Main thread.
class SharedApplication {
public:
    virtual ~SharedApplication() = default;

    /// Asks the delegate, unless the application is already ending. Unlike on other platforms it returns when the end is decided: see
    /// isRunning().
    virtual void terminate() = 0;
    /// `true` ends the application, also without an open question.
    virtual void replyToApplicationShouldTerminate(bool shouldTerminate) = 0;
    /// Tells the framework that the delegate has decided to go on.
    virtual void terminationWasRefused() = 0;
    /// The number of the open request that the delegate is just being asked to handle, for delegates that answer later; 0 outside such a
    /// call.
    virtual int openRequest() const = 0;
    /// Answers the open request with that number, or the oldest one when no open request has it. Does nothing when no request is open.
    virtual void replyToOpenOrPrint(NSApplicationDelegateReply reply, int request) = 0;
    /// False once the end is decided; nothing may be begun or shown then.
    virtual bool isRunning() const = 0;
    /// Whether the application is the active one.
    virtual bool isActive() const = 0;
    /// Brings the application's windows to the front.
    virtual void activate() = 0;
    /// Null when there is no menu.
    virtual std::shared_ptr<NSMenu> mainMenu() const = 0;
    /// Whether the framework itself enables a menu action; the delegate is not asked.
    virtual bool validatesAction(const QString& action) const = 0;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The two sides of the conversation between the application framework and the one object that decides for the application: what that object
// is asked and told, and what it may ask of the framework. Both without widgets, so that whoever decides need not see any.
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
/// Posted with the application as object, when it has been asked to end and has found out after a while that it goes on.
inline const QString NSApplicationDidRefuseTerminationNotification = QStringLiteral("NSApplicationDidRefuseTerminationNotification");

/// Posted by the delegate: the session ends, and nobody will answer a question any more. Whoever asks one gives up.
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
    /// Absolute paths, at least one. Before applicationDidFinishLaunching() when they came with the launch. Answered with
    /// NSApplication::replyToOpenOrPrint(), now or later.
    virtual void applicationOpenFiles(const QStringList& filenames) = 0;
    /// `later` is answered with NSApplication::replyToApplicationShouldTerminate().
    virtual NSApplicationTerminateReply applicationShouldTerminate() { return NSApplicationTerminateReply::now; }
    /// After `cancel`: whether that is only for now, because the delegate has begun to find out (it then calls terminate() itself, or
    /// SharedApplication::terminationWasRefused()).
    virtual bool isDecidingTermination() const { return false; }
    /// SIGTERM, SIGINT or SIGHUP have come. True when the delegate sees to the end itself; else terminate() follows.
    virtual bool applicationReceivedSignal() { return false; }
    virtual void applicationWillTerminate() {}
    /// wakeWaits() was called: something that the application waits for may have come.
    virtual void applicationWaitsWoken() {}
    /// Somebody has launched the application, which runs already; what is open comes to the front after this.
    virtual void applicationWillReopen() {}
    /// Somebody has sent "activate", another process or the application's own script; what is open comes to the front after this.
    virtual void applicationWillActivate(bool isAskedByOther) { (void)isAskedByOther; }
    /// Asked when the user has closed the last window.
    virtual bool applicationShouldTerminateAfterLastWindowClosed() { return false; }

    /// Whether the delegate performs the menu action itself; only then is it asked about its items.
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

/// What the framework (appkit/NSApplication.h) offers. Main thread.
class SharedApplication {
public:
    virtual ~SharedApplication() = default;

    /// Asks the delegate, unless the end has begun. Unlike on other platforms it returns when the end was decided: see isRunning().
    virtual void terminate() = 0;
    /// True ends the application, even when no question is outstanding.
    virtual void replyToApplicationShouldTerminate(bool shouldTerminate) = 0;
    /// The delegate has found out that the application goes on.
    virtual void terminationWasRefused() = 0;
    /// The number of the open request that the delegate is being asked about, for a delegate that answers later; 0: it is not asked.
    virtual int openRequest() const = 0;
    /// Answers the open request of that number, or the oldest one when no open request has it; does nothing when there is none.
    virtual void replyToOpenOrPrint(NSApplicationDelegateReply reply, int request) = 0;
    /// False once the end was decided: nothing is to be begun or shown any more.
    virtual bool isRunning() const = 0;
    /// Whether one of its windows has the user's attention.
    virtual bool isActive() const = 0;
    /// Brings what is open to the front.
    virtual void activate() = 0;
    /// Null when there is none.
    virtual std::shared_ptr<NSMenu> mainMenu() const = 0;
    /// The framework's own judgement of a menu action, without the delegate.
    virtual bool validatesAction(const QString& action) const = 0;
};

} // namespace quoddle

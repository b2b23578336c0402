// SPDX-License-Identifier: MIT
// The application framework: start-up order, requests to open files, termination, menu actions, modal sessions.
// One decision: every way in which a program can be asked to end (menu, quit event, SIGTERM and SIGINT, the end of the session, the last
// window closed) becomes the same question to the delegate, asked by terminate(). The framework knows nothing of scripts. While it runs it
// handles the Apple events that every application handles (run, reopen, open, quit). Main thread only.
#pragma once

#include "platform/ae/NSAppleEventManager.h"
#include "platform/base/Wait.h"
#include "platform/foundation/NSApplicationDelegate.h"
#include "platform/foundation/NSMenu.h"

#include <functional>

#include <QApplication>
#include <QHash>

class QDialog;
class QEventLoop;
class QSessionManager;

namespace quoddle {

class NSWindow;

/// The answer of a modal session or a sheet that was broken off, by the end of the application for example.
constexpr int NSModalResponseAbort = -1001;

class NSApplication : public QApplication, public SharedApplication {
    Q_OBJECT
public:
    NSApplication(int& argc, char** argv);
    ~NSApplication() override;
    /// The application object; null before one was made.
    static NSApplication* sharedApplication();

    /// Sets the delegate, which is not owned; to be called before run().
    void setDelegate(NSApplicationDelegate* delegate) { mDelegate = delegate; }
    NSApplicationDelegate* delegate() const { return mDelegate; }

    /// Launches (will finish, open the files if any, did finish) and serves events until the application has terminated.
    int run(const QStringList& filesToOpen = {});
    bool isRunning() const override { return !mTerminating; }

    using OpenCompletion = std::function<void(NSApplicationDelegateReply)>;
    /// Hands files to the delegate. The completion, which may be empty, is called when the delegate has answered for them, at once or
    /// later.
    void openFiles(const QStringList& filenames, OpenCompletion completion = {});
    int openRequest() const override { return mAskedOpenRequest; }
    void replyToOpenOrPrint(NSApplicationDelegateReply reply, int request) override;

    /// Asks the delegate whether to end. While an answer is outstanding, another call asks the delegate again.
    void terminate() override;
    void replyToApplicationShouldTerminate(bool shouldTerminate) override;
    void terminationWasRefused() override;
    /// Called by a window that the user has closed: asks the delegate when it was the last one, unless the closing has led to a question
    /// already.
    void windowDidClose(const NSWindow& window, bool askedToTerminate);
    /// Whether the delegate was asked to terminate, or asks its script, and has not come to an answer.
    bool isDecidingTermination() const { return mReplyPending || (mDelegate && mDelegate->isDecidingTermination()); }
    /// How often terminate() has asked the delegate.
    int terminationQuestionCount() const { return mTerminationQuestions; }

    bool isActive() const override { return applicationState() == Qt::ApplicationActive; }
    void activate() override;
    /// Handles a second launch while the application runs: tells the delegate and brings what is open to the front. `isAskedByOther` is
    /// false when the application's own script asks.
    void reopen(bool isAskedByOther);

    std::shared_ptr<NSMenu> mainMenu() const override { return mMainMenu; }
    void setMainMenu(std::shared_ptr<NSMenu> menu) { mMainMenu = std::move(menu); }
    /// Adds an action to the ones that the framework performs, for example orderFrontStandardAboutPanel:.
    void setAction(const QString& action, std::function<void()> perform) { mActions.insert(action, std::move(perform)); }
    /// Performs the action of a menu item, by the delegate or else by the framework (terminate:, performClose:, performMiniaturize:, cut:,
    /// copy:, paste:, selectAll:). False when nobody performs it or its item is not valid now.
    bool sendAction(const NSMenuItem& item);
    bool validateMenuItem(const NSMenuItem& item) const;
    bool validatesAction(const QString& action) const override;

    /// Shows the dialog application-modal and returns what it finished with, or NSModalResponseAbort. Sessions nest; an outer one
    /// ends after the inner one. The dialog is hidden when the function returns.
    int runModalForWindow(QDialog& dialog);
    /// Releases the object when the event loop comes round, at the latest when the application is destroyed. Meant for a dialog whose
    /// button is in the middle of a call.
    void releaseLater(std::shared_ptr<void> object);

Q_SIGNALS:
    /// Somebody called wakeWaits(), or the main thread's waker: anything that is waited for may have been cancelled.
    void waitsWoken();

protected:
    bool event(QEvent* event) override;

private:
    struct OpenRequest {
        int number;
        OpenCompletion completion;
    };
    void finishLaunching(const QStringList& filesToOpen);
    void terminateNow();
    void watchSignals();
    void registerAppleEventHandlers();
    void removeAppleEventHandlers();
    void handleAppleEvent(const std::shared_ptr<NSAppleEventDescriptor>& event, const std::shared_ptr<NSAppleEventDescriptor>& reply);
    void handleQuitEvent(const std::shared_ptr<NSAppleEventDescriptor>& reply);
    void answerQuitEvents(OSStatus status);
    void handleOpenEvent(const std::shared_ptr<NSAppleEventDescriptor>& event, const std::shared_ptr<NSAppleEventDescriptor>& reply);
    void endOfSession(QSessionManager& manager);

    Wait mWait; // wakes the event loop
    NSApplicationDelegate* mDelegate = nullptr;
    std::shared_ptr<NSMenu> mMainMenu;
    QHash<QString, std::function<void()>> mActions;
    std::vector<OpenRequest> mOpenRequests; // the oldest first
    int mLastOpenRequest = 0;
    int mAskedOpenRequest = 0;                                // the request that the delegate is being asked about; 0: none
    std::vector<NSAppleEventManagerSuspensionID> mQuitEvents; // suspended until it is known whether the application ends
    std::vector<std::shared_ptr<void>> mToRelease;
    int mTerminationQuestions = 0;
    bool mReplyPending = false;
    bool mTerminating = false;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The application framework: start-up order, requests to open files, the road to the end, menu actions, modal sessions.
// One decision: every way in which a program can be asked to go (menu, quit event, SIGTERM and SIGINT, the end of the session, the last
// window closed) is the same question to the delegate, asked by terminate(). It knows nothing of scripts. While it runs it handles the
// Apple events that every application does (run, reopen, open, quit). Main thread only.
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

/// What a modal session or a sheet answers when it was broken off, by the end of the application for one.
constexpr int NSModalResponseAbort = -1001;

class NSApplication : public QApplication, public SharedApplication {
    Q_OBJECT
public:
    NSApplication(int& argc, char** argv);
    ~NSApplication() override;
    /// Null before one was made.
    static NSApplication* sharedApplication();

    /// Not owned; set before run().
    void setDelegate(NSApplicationDelegate* delegate) { mDelegate = delegate; }
    NSApplicationDelegate* delegate() const { return mDelegate; }

    /// Launches (will finish, open the files if any, did finish) and serves events until the application has terminated.
    int run(const QStringList& filesToOpen = {});
    bool isRunning() const override { return !mTerminating; }

    using OpenCompletion = std::function<void(NSApplicationDelegateReply)>;
    /// Hands files to the delegate. The completion (may be empty) is called when the delegate has answered for them, at once or later.
    void openFiles(const QStringList& filenames, OpenCompletion completion = {});
    int openRequest() const override { return mAskedOpenRequest; }
    void replyToOpenOrPrint(NSApplicationDelegateReply reply, int request) override;

    /// While an answer is outstanding, asking again asks the delegate again.
    void terminate() override;
    void replyToApplicationShouldTerminate(bool shouldTerminate) override;
    void terminationWasRefused() override;
    /// Called by a window that the user has closed: asks the delegate when it was the last one, unless the closing has led to a question
    /// already.
    void windowDidClose(const NSWindow& window, bool askedToTerminate);
    /// The delegate was asked whether to terminate, or asks its script, and has not come to an answer.
    bool isDecidingTermination() const { return mReplyPending || (mDelegate && mDelegate->isDecidingTermination()); }
    /// How often terminate() has asked the delegate.
    int terminationQuestionCount() const { return mTerminationQuestions; }

    bool isActive() const override { return applicationState() == Qt::ApplicationActive; }
    void activate() override;
    /// Launched once more while it runs: tells the delegate, and brings to the front what is open.
    void reopen();

    std::shared_ptr<NSMenu> mainMenu() const override { return mMainMenu; }
    void setMainMenu(std::shared_ptr<NSMenu> menu) { mMainMenu = std::move(menu); }
    /// Adds an action to those that the framework performs (orderFrontStandardAboutPanel: for one).
    void setAction(const QString& action, std::function<void()> perform) { mActions.insert(action, std::move(perform)); }
    /// Performed by the delegate, else by the framework (terminate:, performClose:, performMiniaturize:, cut:, copy:, paste:, selectAll:).
    /// False when nobody performs it or its item is not valid now.
    bool sendAction(const NSMenuItem& item);
    bool validateMenuItem(const NSMenuItem& item) const;
    bool validatesAction(const QString& action) const override;

    /// Shows the dialog application-modal and returns what it finished with, the code of stopModal(), or NSModalResponseAbort. Sessions
    /// nest; an outer one ends after the inner one. The dialog is hidden when it returns.
    int runModalForWindow(QDialog& dialog);
    /// Ends the innermost session.
    void stopModal(int returnCode);
    /// Lets go of the object when the event loop comes round, at the latest when the application goes: for a dialog whose button is in the
    /// middle of calling.
    void releaseLater(std::shared_ptr<void> object);
    int modalSessionCount() const { return static_cast<int>(mModalSessions.size()); }

Q_SIGNALS:
    /// wakeWaits() was called, or the main thread's waker: something that is waited for may have been cancelled.
    void waitsWoken();

protected:
    bool event(QEvent* event) override;

private:
    struct OpenRequest {
        int number;
        OpenCompletion completion;
    };
    struct ModalSession {
        QEventLoop* loop;
        int returnCode;
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

    Wait mWait; // the event loop's
    NSApplicationDelegate* mDelegate = nullptr;
    std::shared_ptr<NSMenu> mMainMenu;
    QHash<QString, std::function<void()>> mActions;
    std::vector<OpenRequest> mOpenRequests; // the oldest first
    int mLastOpenRequest = 0;
    int mAskedOpenRequest = 0;                                // the one that the delegate is being asked about; 0: none
    std::vector<NSAppleEventManagerSuspensionID> mQuitEvents; // that wait for the answer
    std::vector<ModalSession*> mModalSessions;
    std::vector<std::shared_ptr<void>> mToRelease;
    int mTerminationQuestions = 0;
    bool mReplyPending = false;
    bool mTerminating = false;
};

} // namespace quoddle

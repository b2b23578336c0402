// SPDX-License-Identifier: MIT
#include "platform/appkit/NSApplication.h"

#include "platform/ae/AEMainThread.h"
#include "platform/appkit/CursorRest.h"
#include "platform/appkit/DesktopStyle.h"
#include "platform/appkit/NSWindow.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSNotificationCenter.h"

#include <QDialog>
#include <QEventLoop>
#include <QFileOpenEvent>
#include <QLocale>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>

namespace quoddle {

namespace {

// The main thread for the event layer: Apple events wait in the same queue as all other work for the main thread.
AEMainThread mainThreadForAppleEvents() {
    AEMainThread thread;
    thread.isCurrent = &MainThread::isCurrent;
    thread.post = &MainThread::dispatchAsync;
    thread.processEvents = [](std::chrono::milliseconds slice) {
        // processEvents(flags, ms) goes on as long as there are events; here one round that waits is wanted.
        QTimer alarm;
        alarm.setSingleShot(true);
        alarm.start(slice);
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    };
    thread.watch = [](int descriptor, std::function<void()> ready) {
        auto notifier = std::make_shared<QSocketNotifier>(descriptor, QSocketNotifier::Read);
        QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), ready);
        return notifier;
    };
    return thread;
}

} // namespace

NSApplication::NSApplication(int& argc, char** argv) : QApplication(argc, argv) {
    setStyle(new DesktopStyle);
    new CursorRest(this);
    setQuitOnLastWindowClosed(false);                 // the delegate decides about the end
    if (QLocale().textDirection() == Qt::RightToLeft) // the toolkit itself only turns with a translation of its own
        setLayoutDirection(Qt::RightToLeft);
    MainThread::open();
    AESetMainThread(mainThreadForAppleEvents());
    auto* woken = new QSocketNotifier(mWait.descriptor(), QSocketNotifier::Read, this);
    connect(woken, &QSocketNotifier::activated, this, [this] {
        mWait.forget();
        Q_EMIT waitsWoken();
        if (mDelegate)
            mDelegate->applicationWaitsWoken();
    });
    connect(this, &QGuiApplication::commitDataRequest, this, &NSApplication::endOfSession, Qt::DirectConnection);
}

NSApplication::~NSApplication() {
    mToRelease.clear();
    AESetMainThread({});
}

NSApplication* NSApplication::sharedApplication() {
    return qobject_cast<NSApplication*>(QCoreApplication::instance());
}

int NSApplication::run(const QStringList& filesToOpen) {
    mTerminating = false;
    mReplyPending = false;
    mOpenRequests.clear();
    watchSignals();
    registerAppleEventHandlers();
    // The launch happens inside the loop, so that a delegate which terminates while launching ends a loop that runs.
    QTimer::singleShot(0, this, [this, filesToOpen] { finishLaunching(filesToOpen); });
    const int status = exec();
    MainThread::close();
    removeAppleEventHandlers();
    return status;
}

void NSApplication::finishLaunching(const QStringList& filesToOpen) {
    mDelegate->applicationWillFinishLaunching();
    if (!filesToOpen.isEmpty())
        openFiles(filesToOpen);
    if (!mTerminating)
        mDelegate->applicationDidFinishLaunching();
    NSNotificationCenter::defaultCenter().postNotification(NSApplicationDidFinishLaunchingNotification, this);
}

void NSApplication::openFiles(const QStringList& filenames, OpenCompletion completion) {
    const int number = ++mLastOpenRequest;
    mOpenRequests.push_back({number, std::move(completion)});
    const int outer = std::exchange(mAskedOpenRequest, number);
    mDelegate->applicationOpenFiles(filenames);
    mAskedOpenRequest = outer;
}

void NSApplication::replyToOpenOrPrint(NSApplicationDelegateReply reply, int request) {
    auto open =
        std::find_if(mOpenRequests.begin(), mOpenRequests.end(), [request](const OpenRequest& each) { return each.number == request; });
    if (open == mOpenRequests.end())
        open = mOpenRequests.begin();
    if (open == mOpenRequests.end())
        return;
    const OpenCompletion completion = std::move(open->completion);
    mOpenRequests.erase(open);
    if (completion)
        completion(reply);
}

void NSApplication::terminate() {
    if (mTerminating)
        return;
    ++mTerminationQuestions;
    const auto reply = mDelegate ? mDelegate->applicationShouldTerminate() : NSApplicationTerminateReply::now;
    mReplyPending = reply == NSApplicationTerminateReply::later;
    if (reply == NSApplicationTerminateReply::now)
        terminateNow();
}

void NSApplication::replyToApplicationShouldTerminate(bool shouldTerminate) {
    mReplyPending = false;
    if (shouldTerminate && !mTerminating)
        terminateNow();
    else if (!mTerminating) // the delegate may go on deciding once this function returns
        QTimer::singleShot(0, this, [this] {
            if (!mTerminating && !mReplyPending && !(mDelegate && mDelegate->isDecidingTermination()))
                terminationWasRefused();
        });
}

void NSApplication::terminationWasRefused() {
    answerQuitEvents(userCanceledErr);
    NSNotificationCenter::defaultCenter().postNotification(NSApplicationDidRefuseTerminationNotification, this);
}

void NSApplication::terminateNow() {
    mTerminating = true;
    answerQuitEvents(noErr);
    if (mDelegate)
        mDelegate->applicationWillTerminate();
    NSNotificationCenter::defaultCenter().postNotification(NSApplicationWillTerminateNotification, this);
    // The windows go at once, even when a worker needs a moment to end.
    const QWidgetList windows = topLevelWidgets();
    for (QWidget* window : windows)
        window->hide();
    exit(0); // ends nested loops, too
}

void NSApplication::windowDidClose(const NSWindow& window, bool askedToTerminate) {
    const QWidgetList windows = topLevelWidgets();
    const bool last = std::none_of(windows.begin(), windows.end(), [&window](const QWidget* other) {
        return other != &window && other->isVisible() && qobject_cast<const NSWindow*>(other); // panels do not keep an application running
    });
    if (last && !askedToTerminate && !mTerminating && mDelegate && mDelegate->applicationShouldTerminateAfterLastWindowClosed())
        terminate();
}

bool NSApplication::event(QEvent* event) {
    if (event->type() == QEvent::Quit && !mTerminating) {
        event->ignore();
        terminate();
        return true;
    }
    if (event->type() == QEvent::FileOpen && mDelegate) {
        openFiles({static_cast<QFileOpenEvent*>(event)->file()});
        return true;
    }
    return QApplication::event(event);
}

int NSApplication::runModalForWindow(QDialog& dialog) {
    if (mTerminating && thread()->loopLevel() > 0) // the event loops are ending
        return NSModalResponseAbort;
    QEventLoop loop;
    int returnCode = NSModalResponseAbort;
    const auto connection = connect(&dialog, &QDialog::finished, &loop, [&](int result) {
        returnCode = result;
        loop.quit();
    });
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.show();
    dialog.raise();
    dialog.activateWindow();
    loop.exec();
    disconnect(connection);
    dialog.hide();
    return returnCode;
}

void NSApplication::releaseLater(std::shared_ptr<void> object) {
    mToRelease.push_back(std::move(object));
    if (mToRelease.size() == 1)
        QTimer::singleShot(0, this, [this] { std::exchange(mToRelease, {}).clear(); });
}

} // namespace quoddle

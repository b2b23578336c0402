// SPDX-License-Identifier: MIT
#include "dialogs/DialogSession.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSWindowController.h"
#include "platform/panels/CommandDialog.h"
#include "runtime/AppDelegate.h"

#include <deque>

#include <QTimer>

namespace quoddle {

namespace {

NSAppleEventManager& eventManager() {
    return NSAppleEventManager::sharedAppleEventManager();
}

class DialogSession;

/// In the order in which they came; the first one is up, or is being answered.
std::deque<std::shared_ptr<DialogSession>> sSessions;

void showFirst();

class DialogSession : public std::enable_shared_from_this<DialogSession> {
public:
    DialogSession(NSAppleEventManagerSuspensionID suspensionID, DialogForm form, DialogAnswer answer)
        : mSuspensionID(std::move(suspensionID)), mForm(std::move(form)), mAnswer(std::move(answer)) {}

    bool senderHasGivenUp() const { return eventManager().senderHasGivenUpForSuspensionID(mSuspensionID); }

    void show() {
        AppDelegate* delegate = AppDelegate::instance();
        delegate->setDisplayingPanel(true);
        watch();
        delegate->willDisplaySheet();
        if (NSWindow* window = mainWindow(); window && window->isVisible())
            mForm.beginSheet(*window, [self = shared_from_this()](int returnCode) { self->finish(returnCode); });
        else
            finish(mForm.runModal());
    }

    void cancel() { mForm.end(NSModalResponseAbort); }

    void answerCancelled() { answer(&setCancelled); }

    void finish(int returnCode) {
        mGivingUpTimer.stop();
        QObject::disconnect(mSenderWatch);
        answer([&](AEDesc& reply) { returnCode == NSModalResponseAbort ? setCancelled(reply) : mAnswer(returnCode, reply); });
        if (AppDelegate* delegate = AppDelegate::instance())
            delegate->setDisplayingPanel(false);
        // The dialog goes later: its button is in the middle of calling. The next one does not wait for that.
        const auto self = shared_from_this();
        std::erase(sSessions, self);
        NSApplication::sharedApplication()->releaseLater(self);
        if (!sSessions.empty())
            QTimer::singleShot(0, qApp, &showFirst);
    }

private:
    void answer(const std::function<void(AEDesc& reply)>& fill) {
        const auto reply = eventManager().replyAppleEventForSuspensionID(mSuspensionID);
        AEDesc answered = reply->aeDesc();
        fill(answered);
        reply->setAEDesc(std::move(answered));
        eventManager().resumeWithSuspensionID(mSuspensionID);
    }

    void watch() {
        if (mForm.givingUpAfter > 0 && mForm.cancelAfterGivingUp) {
            QObject::connect(&mGivingUpTimer, &QTimer::timeout, &mGivingUpTimer, mForm.cancelAfterGivingUp);
            mGivingUpTimer.setSingleShot(true);
            mGivingUpTimer.start(std::chrono::milliseconds(static_cast<std::int64_t>(std::min(mForm.givingUpAfter * 1000, 2e9))));
        }
        mSenderWatch = QObject::connect(NSApplication::sharedApplication(), &NSApplication::waitsWoken, &mGivingUpTimer, [this] {
            if (senderHasGivenUp())
                cancel();
        });
    }

    const NSAppleEventManagerSuspensionID mSuspensionID;
    const DialogForm mForm;
    const DialogAnswer mAnswer;
    QTimer mGivingUpTimer;
    QMetaObject::Connection mSenderWatch;
};

void showFirst() {
    while (!sSessions.empty() && sSessions.front()->senderHasGivenUp())
        sSessions.pop_front(); // nobody will miss it
    if (!sSessions.empty() && AppDelegate::instance() && !AppDelegate::instance()->isDisplayingPanel())
        sSessions.front()->show();
}

} // namespace

void beginDialogSession(DialogForm form, DialogAnswer answer) {
    auto session = std::make_shared<DialogSession>(eventManager().suspendCurrentAppleEvent(), std::move(form), std::move(answer));
    sSessions.push_back(session);
    if (sSessions.size() == 1)
        session->show();
}

NSWindow* mainWindow() {
    const auto controller = AppDelegate::instance()->mainWindowController();
    auto* withWindow = dynamic_cast<NSWindowController*>(controller.get());
    return withWindow ? withWindow->window() : nullptr;
}

void cancelDialogs() {
    if (sSessions.empty())
        return;
    while (sSessions.size() > 1) {
        sSessions.back()->answerCancelled();
        sSessions.pop_back();
    }
    sSessions.front()->cancel();
}

void dropWaitingDialogs() {
    while (sSessions.size() > 1)
        sSessions.pop_back();
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/panels/DialogQueue.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSWindow.h"
#include "platform/appkit/WindowLayout.h"

#include <algorithm>
#include <limits>

#include <QDialog>
#include <QPointer>

namespace quoddle {

DialogQueue& DialogQueue::shared() {
    static QPointer<DialogQueue> sShared;
    if (!sShared) {
        sShared = new DialogQueue(QCoreApplication::instance());
        connect(qApp, &QCoreApplication::aboutToQuit, sShared, &DialogQueue::close);
    }
    return *sShared;
}

DialogQueue::DialogQueue(QObject* parent) : QObject(parent) {
    mGivingUp.setSingleShot(true);
    connect(&mGivingUp, &QTimer::timeout, this, [this] { currentDialog()->done(kGaveUp); });
    connect(NSApplication::sharedApplication(), &NSApplication::waitsWoken, this, &DialogQueue::endIfAbandoned);
}

DialogQueue::~DialogQueue() = default;

std::uint64_t DialogQueue::add(Request request) {
    const std::uint64_t number = ++mLastNumber;
    mWaiting.push_back({number, std::move(request)});
    if (mWaiting.size() == 1 && !mIsEnding)
        show();
    return number;
}

void DialogQueue::showNext() {
    while (!mWaiting.empty() && !mIsShowing) {
        const auto& isAbandoned = mWaiting.front().request.isAbandoned;
        if (!isAbandoned || !isAbandoned())
            return show();
        Waiting abandoned = std::move(mWaiting.front());
        mWaiting.pop_front();
        complete(abandoned, setCancelled);
    }
}

void DialogQueue::show() {
    mIsShowing = true;
    const Request& request = mWaiting.front().request;
    const CommandDialog& shown = request.dialog;
    if (request.host)
        request.host->dialogWillShow();
    if (shown.givingUpAfter > 0)
        mGivingUp.start(static_cast<int>(std::min(shown.givingUpAfter * 1000, double(std::numeric_limits<int>::max()))));
    NSWindow* const window = request.host ? request.host->sheetWindow() : nullptr;
    if (shown.prepare)
        shown.prepare(window);
    const auto ended = [this, number = mWaiting.front().number](int returnCode) { finish(number, returnCode); };
    if (window) {
        window->beginSheet(shown.dialog.get(), ended);
    } else {
        connect(shown.dialog.get(), &QDialog::finished, this, ended);
        showInWindowOfItsOwn();
    }
}

void DialogQueue::showInWindowOfItsOwn() {
    QDialog& dialog = *currentDialog();
    if (dialog.windowTitle().isEmpty())
        dialog.setWindowTitle(standardTitle());
    dialog.setWindowModality(Qt::ApplicationModal);
    completeLayout(dialog);
    if (!dialog.testAttribute(Qt::WA_Resized)) // nobody has chosen a size
        dialog.adjustSize();
    fitToScreen(dialog);
    dialog.show();
    dialog.raise();
    dialog.activateWindow();
}

void DialogQueue::complete(Waiting& done, const std::function<void(AEDesc& reply)>& fill) {
    fill(done.request.reply);
    done.request.completion(done.request.reply);
}

/// Ends a dialog. It may be in the middle of its own work, so it is released later; the next dialog does not wait for that.
void DialogQueue::finish(std::uint64_t number, int returnCode) {
    if (!mIsShowing || mWaiting.front().number != number)
        return;
    mIsShowing = false;
    mGivingUp.stop();
    Waiting done = std::move(mWaiting.front());
    mWaiting.pop_front();
    const CommandDialog& ended = done.request.dialog;
    disconnect(ended.dialog.get(), nullptr, this, nullptr);
    ended.dialog->hide();
    mIsEnding = true;
    complete(done, [&](AEDesc& reply) { returnCode == NSModalResponseAbort ? setCancelled(reply) : ended.answer(returnCode, reply); });
    if (done.request.host)
        done.request.host->dialogDidEnd();
    mIsEnding = false;
    NSApplication::sharedApplication()->releaseLater(std::make_shared<CommandDialog>(ended));
    QTimer::singleShot(0, this, &DialogQueue::showNext);
}

void DialogQueue::cancel(std::uint64_t number) {
    const auto found =
        std::find_if(mWaiting.begin(), mWaiting.end(), [number](const Waiting& waiting) { return waiting.number == number; });
    if (found == mWaiting.end())
        return;
    if (found == mWaiting.begin() && mIsShowing)
        return currentDialog()->done(NSModalResponseAbort);
    Waiting cancelled = std::move(*found);
    mWaiting.erase(found);
    complete(cancelled, setCancelled);
}

void DialogQueue::endIfAbandoned() {
    if (!mIsShowing)
        return;
    const Waiting& shown = mWaiting.front();
    if (shown.request.isAbandoned && shown.request.isAbandoned())
        cancel(shown.number);
}

void DialogQueue::cancelAll() {
    while (mWaiting.size() > 1)
        cancel(mWaiting.back().number);
    if (!mWaiting.empty())
        cancel(mWaiting.front().number);
}

void DialogQueue::close() {
    mGivingUp.stop();
    if (QDialog* dialog = currentDialog()) {
        disconnect(dialog, nullptr, this, nullptr);
        dialog->hide();
        NSApplication::sharedApplication()->releaseLater(mWaiting.front().request.dialog.dialog);
    }
    mIsShowing = false;
    for (Waiting& unanswered : std::exchange(mWaiting, {}))
        complete(unanswered, [](AEDesc& reply) { (void)reply.put("errn"_4cc, AEDesc::ofInt32(connectionInvalid)); });
}

} // namespace quoddle

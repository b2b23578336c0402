// SPDX-License-Identifier: MIT
#include "platform/panels/StandardCommands.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/WindowLayout.h"
#include "platform/panels/Notification.h"

#include <limits>

#include <QCoreApplication>
#include <QDialog>
#include <QPointer>

namespace quoddle {

namespace {

constexpr struct {
    AEEventClass eventClass;
    AEEventID eventID;
    CommandDialog (*make)(const AEDesc& event, AEDesc& reply);
} kCommands[] = {
    {"syso"_4cc, "dlog"_4cc, displayDialogDialog},     {"syso"_4cc, "disA"_4cc, displayAlertDialog},
    {"gtqp"_4cc, "chlt"_4cc, chooseFromListDialog},    {"syso"_4cc, "stdf"_4cc, chooseFileDialog},
    {"syso"_4cc, "stfl"_4cc, chooseFolderDialog},      {"syso"_4cc, "nwfl"_4cc, chooseFileNameDialog},
    {"syso"_4cc, "chcl"_4cc, chooseColorDialog},       {"syso"_4cc, "chur"_4cc, chooseURLDialog},
    {"syso"_4cc, "ppcb"_4cc, chooseApplicationDialog},
};

CommandDialog makeDialog(const AEDesc& event, AEDesc& reply) {
    for (const auto& row : kCommands)
        if (row.eventClass == event.eventClass() && row.eventID == event.eventID())
            return row.make(event, reply);
    (void)reply.put("errn"_4cc, AEDesc::ofInt32(errAEEventNotHandled));
    return {};
}

} // namespace

StandardCommands& StandardCommands::shared() {
    static QPointer<StandardCommands> sShared;
    if (!sShared) {
        sShared = new StandardCommands(QCoreApplication::instance());
        connect(qApp, &QCoreApplication::aboutToQuit, sShared, &StandardCommands::close);
    }
    return *sShared;
}

StandardCommands::StandardCommands(QObject* parent) : QObject(parent) {
    mGivingUp.setSingleShot(true);
    connect(&mGivingUp, &QTimer::timeout, this, [this] {
        if (mCurrent.dialog)
            mCurrent.dialog->done(kGaveUp);
    });
}

StandardCommands::~StandardCommands() = default;

std::uint64_t StandardCommands::perform(const AEDesc& event, const AEDesc& reply, Completion completion) {
    const std::uint64_t number = ++mLastNumber;
    if (event.eventClass() == "syso"_4cc && event.eventID() == "notf"_4cc) {
        sendNotification(event, reply, std::move(completion)); // asks nobody and waits for nobody
        return number;
    }
    mQueue.push_back({number, event, reply, std::move(completion)});
    if (mQueue.size() == 1)
        showNext();
    return number;
}

void StandardCommands::showNext() {
    while (!mQueue.empty() && !mCurrent.dialog) {
        CommandDialog next = makeDialog(mQueue.front().event, mQueue.front().reply);
        if (next.dialog)
            return show(std::move(next));
        const Waiting done = std::move(mQueue.front());
        mQueue.pop_front();
        done.completion(done.reply);
    }
}

void StandardCommands::show(CommandDialog next) {
    mCurrent = std::move(next);
    QDialog& dialog = *mCurrent.dialog;
    connect(&dialog, &QDialog::finished, this, &StandardCommands::finish);
    if (dialog.windowTitle().isEmpty())
        dialog.setWindowTitle(standardTitle());
    dialog.setWindowModality(Qt::ApplicationModal);
    completeLayout(dialog);
    if (!dialog.testAttribute(Qt::WA_Resized)) // it has no size of its own choice
        dialog.adjustSize();
    fitToScreen(dialog);
    dialog.show();
    dialog.raise();
    dialog.activateWindow();
    if (mCurrent.givingUpAfter > 0)
        mGivingUp.start(static_cast<int>(std::min(mCurrent.givingUpAfter * 1000, double(std::numeric_limits<int>::max()))));
}

/// The dialog may be in the middle of its own work: it goes later.
void StandardCommands::retire() {
    mGivingUp.stop();
    const auto dialog = std::exchange(mCurrent, {}).dialog;
    disconnect(dialog.get(), nullptr, this, nullptr);
    dialog->hide();
    NSApplication::sharedApplication()->releaseLater(dialog);
}

void StandardCommands::finish(int returnCode) {
    Waiting done = std::move(mQueue.front());
    mCurrent.answer(returnCode, done.reply);
    retire();
    mQueue.pop_front();
    done.completion(done.reply);
    showNext();
}

void StandardCommands::cancel(std::uint64_t number) {
    const auto found = std::find_if(mQueue.begin(), mQueue.end(), [number](const Waiting& waiting) { return waiting.number == number; });
    if (found == mQueue.end())
        return;
    if (found == mQueue.begin() && mCurrent.dialog)
        retire();
    Waiting done = std::move(*found);
    mQueue.erase(found);
    setCancelled(done.reply);
    done.completion(done.reply);
    showNext();
}

void StandardCommands::close() {
    if (mCurrent.dialog)
        retire();
    for (Waiting& unanswered : std::exchange(mQueue, {})) {
        (void)unanswered.reply.put("errn"_4cc, AEDesc::ofInt32(connectionInvalid));
        unanswered.completion(unanswered.reply);
    }
}

} // namespace quoddle

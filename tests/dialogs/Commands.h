// SPDX-License-Identifier: MIT
// Sends a dialog command to the shell like a script, and answers the dialog like a user.
#pragma once

#include "dialogs/AppDelegate+StandardAdditions.h"
#include "platform/ae/AESendMessage.h"
#include "platform/appkit/NSPanel.h"
#include "window/Shell.h"

#include <thread>

#include <QApplication>
#include <QPushButton>
#include <QTest>

namespace quoddle::test {

inline QDialog* visibleDialog() {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* dialog = qobject_cast<QDialog*>(widget); dialog && dialog->isVisible())
            return dialog;
    return nullptr;
}

/// The visible button of the name; null when the dialog has none.
inline QPushButton* buttonNamed(const QDialog& dialog, const QString& accessibleName) {
    for (auto* button : dialog.findChildren<QPushButton*>())
        if (button->isVisible() && button->accessibleName() == accessibleName)
            return button;
    return nullptr;
}

using Answer = std::function<void(QDialog& dialog)>;

inline Answer press(const QString& button) {
    return [button](QDialog& dialog) {
        QPushButton* found = buttonNamed(dialog, button);
        ASSERT_TRUE(found) << button.toStdString();
        found->click();
    };
}

inline Answer key(Qt::Key pressed) {
    return [pressed](QDialog& dialog) { QTest::keyClick(dialog.focusWidget() ? dialog.focusWidget() : &dialog, pressed); };
}

/// Sends a command and holds the sender's reply. The first dialog that appears is answered once; with an empty answer it is left alone.
class Conversation {
public:
    Conversation(AEDesc event, Answer answer, std::function<bool()> senderGivesUp = {}) {
        mSender = std::thread([this, event = std::move(event), senderGivesUp = std::move(senderGivesUp)] {
            mStatus = AESendMessage(event, &mReply, kAEWaitReply, 20 * 60, {senderGivesUp});
            mIsAnswered = true;
        });
        // The user is a timer, because timers also fire in the event loop of a modal session.
        QTimer user;
        QObject::connect(&user, &QTimer::timeout, &user, [&] {
            QDialog* dialog = visibleDialog();
            if (dialog && !std::exchange(mDialogWasSeen, true)) {
                mWasDisplaying = AppDelegate::instance()->isDisplayingPanel();
                if (answer)
                    answer(*dialog);
            } else if (dialog && ++mTurns == 2500) {
                ADD_FAILURE() << "the dialog has not gone";
                dialog->done(0);
            }
        });
        user.start(2);
        EXPECT_TRUE(QTest::qWaitFor([this] { return mIsAnswered.load(); }, 20'000));
        mSender.join();
        if (mStatus != userCanceledErr) { // the applet notices a moment later when a sender stops waiting
            EXPECT_FALSE(AppDelegate::instance()->isDisplayingPanel());
        }
    }

    const AEDesc& reply() const { return mReply; }
    OSStatus status() const { return mStatus; }
    bool dialogWasSeen() const { return mDialogWasSeen; }
    bool wasDisplayingPanel() const { return mWasDisplaying; }
    AEDesc result() const { return field("----"_4cc); }
    AEDesc field(AEKeyword key) const {
        const AEDesc* found = mReply.find(key);
        return found ? *found : AEDesc();
    }
    OSStatus errorNumber() const { return field("errn"_4cc).asInt32().value_or(0); }

private:
    std::thread mSender;
    AEDesc mReply;
    OSStatus mStatus = noErr;
    std::atomic<bool> mIsAnswered = false;
    int mTurns = 0;
    bool mDialogWasSeen = false;
    bool mWasDisplaying = false;
};

inline AEDesc text(const char* utf8) {
    return AEDesc::ofUTF8(utf8);
}

inline AEDesc texts(std::initializer_list<const char*> items) {
    std::vector<AEDesc> list;
    for (const char* item : items)
        list.push_back(text(item));
    return AEDesc::list(std::move(list));
}

inline AEDesc command(AEEventClass eventClass, AEEventID eventID, std::vector<AEItem> parameters) {
    AEDesc event = AEDesc::appleEvent(eventClass, eventID, AEDesc::ofCurrentProcess());
    for (AEItem& parameter : parameters)
        (void)event.put(parameter.key, std::move(parameter.value));
    return event;
}

inline AEDesc displayDialog(std::vector<AEItem> parameters) {
    parameters.insert(parameters.begin(), {"----"_4cc, text("What now?")});
    return command("syso"_4cc, "dlog"_4cc, std::move(parameters));
}

/// An applet whose window is visible, so that dialogs are sheets, or hidden, so that they are windows.
class DialogShell : public Shell {
public:
    explicit DialogShell(bool windowIsVisible = true) {
        setUp();
        installOSAXEventHandlers(*delegate);
        if (windowIsVisible)
            controller->showWindow();
    }
};

} // namespace quoddle::test

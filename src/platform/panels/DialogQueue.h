// SPDX-License-Identifier: MIT
// The dialogs of the process that answer commands: each is shown when it is its turn, and its end becomes the command's reply.
// One decision: one dialog at a time, whatever program asks for it. This queue decides which dialog may be answered; the toolkit's modality
// does not suffice, because an assistive technology can press buttons that a user cannot click.
// Main thread only.
#pragma once

#include "platform/panels/CommandDialog.h"

#include <cstdint>
#include <deque>

#include <QObject>
#include <QTimer>

namespace quoddle {

class NSWindow;

class DialogQueue : public QObject {
    Q_OBJECT
public:
    /// An applet that answers commands itself. Must outlive the dialogs that are shown for it.
    class Host {
    public:
        virtual ~Host() = default;
        /// The window that shows the applet's dialogs as sheets; null: the dialogs are windows of their own.
        virtual NSWindow* sheetWindow() = 0;
        virtual void dialogWillShow() = 0;
        /// Called after the command has been answered.
        virtual void dialogDidEnd() = 0;
    };

    struct Request {
        CommandDialog dialog; ///< must have no error
        AEDesc reply;         ///< the reply that the answer is added to
        /// Gets the filled reply, once.
        std::function<void(const AEDesc& reply)> completion;
        Host* host = nullptr;
        /// Whether nobody waits for the answer any more; asked whenever wakeWaits() is called. May be empty.
        std::function<bool()> isAbandoned = {};
    };

    /// The queue of the process. It is closed when the event loop of the application ends, because a window must not outlive the
    /// application.
    static DialogQueue& shared();
    explicit DialogQueue(QObject* parent = nullptr);
    ~DialogQueue() override;

    /// Adds a dialog, which is shown at once when no other one is. Answers the number that identifies it.
    std::uint64_t add(Request request);
    /// Removes the dialog and completes its command with -128. Does nothing for a dialog that has ended.
    void cancel(std::uint64_t number);
    /// Cancels all dialogs. Meant for the end of the session, when no user will answer. The dialog that is shown may be hidden a little
    /// later.
    void cancelAll();
    /// Removes all dialogs and completes their commands with -609.
    void close();
    /// The dialog that is shown, or null.
    QDialog* currentDialog() const { return mIsShowing ? mWaiting.front().request.dialog.dialog.get() : nullptr; }

private:
    struct Waiting {
        std::uint64_t number;
        Request request;
    };
    void showNext();
    void show();
    void showInWindowOfItsOwn();
    void finish(std::uint64_t number, int returnCode);
    void endIfAbandoned();
    static void complete(Waiting& done, const std::function<void(AEDesc& reply)>& fill);

    std::deque<Waiting> mWaiting; // the first one may be shown
    bool mIsShowing = false;
    bool mIsEnding = false; // a command is being answered: dialogs that are added meanwhile wait
    QTimer mGivingUp;
    std::uint64_t mLastNumber = 0;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The dialogs of the process that answer commands: each is shown when it is its turn, and its end becomes the command's reply.
// One decision: one dialog at a time, whoever it comes from. Which one may be answered is decided here and not by what the toolkit lets
// through, for an assistive technology can press what a user cannot click.
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
        /// The window that its dialogs hang on as sheets; null: they are windows of their own.
        virtual NSWindow* sheetWindow() = 0;
        virtual void dialogWillShow() = 0;
        /// After the command has been answered.
        virtual void dialogDidEnd() = 0;
    };

    struct Request {
        CommandDialog dialog; ///< without an error
        AEDesc reply;         ///< to be filled
        /// Gets the filled reply, once.
        std::function<void(const AEDesc& reply)> completion;
        Host* host = nullptr;
        /// True when nobody waits for the answer any more. Asked whenever wakeWaits() is called. May be empty.
        std::function<bool()> isAbandoned = {};
    };

    /// For the whole process. Closed when the event loop of the application ends, for a window must not outlive the application.
    static DialogQueue& shared();
    explicit DialogQueue(QObject* parent = nullptr);
    ~DialogQueue() override;

    /// Shows it at once when none is shown. Answers a number that names it from then on.
    std::uint64_t add(Request request);
    /// Takes the dialog away and completes its command with -128. Nothing happens when that is complete.
    void cancel(std::uint64_t number);
    /// For the end of the session, when no user will answer: cancels all. The one that is shown may go a little later.
    void cancelAll();
    /// Takes the dialog away and completes every command with -609.
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
    bool mIsEnding = false; // what comes as long as the command is being answered waits
    QTimer mGivingUp;
    std::uint64_t mLastNumber = 0;
};

} // namespace quoddle

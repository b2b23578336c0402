// SPDX-License-Identifier: MIT
// The commands that a person answers, as any script may send them: an event comes in, a dialog stands in front until it is answered, the
// reply goes out. One decision: one dialog at a time; who comes while one is shown waits his turn. It knows no scripts and no applet.
// Main thread only.
#pragma once

#include "platform/panels/CommandDialog.h"

#include <cstdint>
#include <deque>

#include <QObject>
#include <QTimer>

namespace quoddle {

class StandardCommands : public QObject {
    Q_OBJECT
public:
    using Completion = std::function<void(const AEDesc& reply)>;

    /// For the whole process. Closed when the event loop of the application ends, for a window must not outlive the application.
    static StandardCommands& shared();
    explicit StandardCommands(QObject* parent = nullptr);
    ~StandardCommands() override;

    /// The completion gets the filled reply, once, perhaps before this returns; "errn" -1708 for a command that is not known here. Answers
    /// a number that names the command from then on.
    std::uint64_t perform(const AEDesc& event, const AEDesc& reply, Completion completion);
    /// Closes the dialog, or takes the command out of the queue, and completes it with -128. Nothing happens to one that is complete.
    void cancel(std::uint64_t number);
    /// Takes the dialog away and completes every command with -609.
    void close();
    /// The dialog that is shown, or null.
    QDialog* currentDialog() const { return mCurrent.dialog.get(); }

private:
    struct Waiting {
        std::uint64_t number;
        AEDesc event, reply;
        Completion completion;
    };
    void showNext();
    void show(CommandDialog dialog);
    void finish(int returnCode);
    void retire();

    std::deque<Waiting> mQueue; // the first one is shown when there is a current dialog
    CommandDialog mCurrent;
    QTimer mGivingUp;
    std::uint64_t mLastNumber = 0;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Dialogs shown by a process of their own: the program quoddle-dialogs, which gets commands as events over a socket and sends replies.
//
// Decision: one process is asked one thing at a time, so that a dialog is closed by ending its process, which always works. A process that
// has answered is kept, and the next dialog is there at once; one script alone therefore has one. It goes when the socket is closed.
#pragma once

#include "platform/ae/NSAppleEventManager.h"

#include <memory>
#include <mutex>
#include <string>

namespace quoddle::additions {

class DialogProcess {
public:
    /// `program` is a path; empty stands for quoddle-dialogs beside the program that runs, or else in PATH.
    explicit DialogProcess(std::string program = {});
    ~DialogProcess();

    /// An InteractionPresenter. Without a display: -1713, and nothing is started. A process that cannot be started, ends early or answers
    /// nonsense is an error with a text; the next call starts another one.
    OSErr present(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

private:
    class Child;
    std::unique_ptr<Child> take(AEDesc& reply);

    const std::string mProgram;
    std::mutex mMutex;
    std::unique_ptr<Child> mIdle;
};

} // namespace quoddle::additions

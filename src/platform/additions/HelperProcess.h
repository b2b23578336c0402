// SPDX-License-Identifier: MIT
// A program with windows or a desktop connection that works for one without: it is started at the first need, gets Apple events over a
// socket on its standard input and sends the replies back.
//
// Decision: one process is asked one thing at a time, so that what it is doing can be ended with it. A process that has answered is kept
// for the next question; one script alone therefore has one. When the socket is closed it goes, or goes on by itself (Ending::stays).
#pragma once

#include "platform/ae/NSAppleEventManager.h"

#include <memory>
#include <mutex>
#include <string>

namespace quoddle::additions {

class HelperProcess {
public:
    /// The fate of the helper when the caller gives up waiting, or ends.
    enum class Ending {
        withUs, ///< killed when it is busy
        stays   ///< left alone, in a session of its own: it has something to keep and ends when it is done
    };
    enum class Outcome { answered, ended, cancelled, noDisplay, notFound };

    /// `program` is a path, or a name that is sought beside the program that runs, or else in PATH.
    HelperProcess(std::string program, Ending ending);
    ~HelperProcess();

    /// Any thread. `answered` is set for Outcome::answered only. The next call starts another process after one that ended early, answered
    /// nonsense or was cancelled.
    Outcome ask(const AEDesc& event, AEDesc& answered, const AEHandlerContext& context);
    /// A path where there is one.
    std::string program() const;

private:
    class Child;
    std::unique_ptr<Child> take();

    const std::string mProgram;
    const Ending mEnding;
    std::mutex mMutex;
    std::unique_ptr<Child> mIdle;
};

} // namespace quoddle::additions

// SPDX-License-Identifier: MIT
// Runs a helper program with windows or a desktop connection for a program without one. The helper is started when it is first needed, gets
// Apple events over a socket on its standard input and sends the replies back.
//
// Decision: one helper handles one event at a time, so that a cancelled event can be ended with its process. A helper that has answered is
// kept for the next event, so a single script has a single helper. When the socket is closed, the helper ends, or goes on by itself
// (Ending::stays).
#pragma once

#include "platform/ae/NSAppleEventManager.h"

#include <memory>
#include <mutex>
#include <string>

namespace quoddle::additions {

class HelperProcess {
public:
    /// The helper's fate when the caller gives up waiting, or ends.
    enum class Ending {
        withUs, ///< killed when it is busy
        stays   ///< left alone in a session of its own, because it holds something; it ends when it is done
    };
    enum class Outcome { answered, ended, cancelled, noDisplay, notFound };

    /// `program` is a path, or a name that is looked for beside the running program, then in PATH.
    HelperProcess(std::string program, Ending ending);
    ~HelperProcess();

    /// Any thread. `answered` is set only for Outcome::answered. A helper that ended early, sent a malformed answer or was cancelled is
    /// replaced at the next call.
    Outcome ask(const AEDesc& event, AEDesc& answered, const AEHandlerContext& context);
    /// The program's path when it has one, else the name to look for in PATH.
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

// SPDX-License-Identifier: MIT
// A command line that sh runs in a process group of its own, which ends with us, whatever ends us.
//
// Decision: between us and the shell stands a guard, a copy of this process that does nothing but wait. It hears of our end through a
// socket that only we hold, so that the group is ended alike when we give it up, leave, crash or are killed. A guard that is killed itself
// takes the shell with it, and we hear of that.
#pragma once

#include "platform/base/FileDescriptor.h"

#include <string>
#include <sys/types.h>

namespace quoddle::additions {

class ShellProcess {
public:
    /// Starts the command; its input is empty. `command` has no NUL.
    explicit ShellProcess(const std::string& command);
    /// Ends the group, first politely, unless the process was released.
    ~ShellProcess();
    ShellProcess(const ShellProcess&) = delete;
    ShellProcess& operator=(const ShellProcess&) = delete;

    /// Whether there is a guard.
    bool isStarted() const { return mGuard > 0; }
    /// Descriptors to read the command's output and errors from. Processes that it has started may keep them open when the command has
    /// ended.
    int output() const { return mOutput.number(); }
    int errors() const { return mErrors.number(); }
    /// Can be read from when the shell has ended.
    int ending() const { return mReport.number(); }

    struct Ending {
        enum class How {
            ended,      ///< `number` is what waitpid() tells
            notStarted, ///< `number` is an errno value
            lostGuard,  ///< somebody has killed the guard, and with it the shell; what that has started may go on
        };
        How how = How::ended;
        int number = 0;
    };
    /// Once, when ending() can be read from.
    Ending takeEnding();
    /// Gives up the group: processes that the command has left running go on.
    void release();

private:
    FileDescriptor mOutput, mErrors, mReport, mLife;
    pid_t mGuard = 0;
};

} // namespace quoddle::additions

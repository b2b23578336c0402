// SPDX-License-Identifier: MIT
// Runs a command line with sh in a process group of its own, which ends with this process, for whatever reason this process ends.
//
// Decision: a guard, a copy of this process that does nothing but wait, stands between this process and the shell. It notices our end by a
// socket that only we hold, and so ends the group in the same way when the object is destroyed, or the process exits, crashes or is killed.
// When the guard itself is killed, the shell dies with it, and we notice.
#pragma once

#include "platform/base/FileDescriptor.h"

#include <string>
#include <sys/types.h>

namespace quoddle::additions {

class ShellProcess {
public:
    /// Starts the command with empty input. `command` has no NUL.
    explicit ShellProcess(const std::string& command);
    /// Ends the group with SIGTERM, then SIGKILL, unless it was released.
    ~ShellProcess();
    ShellProcess(const ShellProcess&) = delete;
    ShellProcess& operator=(const ShellProcess&) = delete;

    /// Whether the guard has been started.
    bool isStarted() const { return mGuard > 0; }
    /// Descriptors for reading the command's output and errors. Processes that the command has started may keep them open after its end.
    int output() const { return mOutput.number(); }
    int errors() const { return mErrors.number(); }
    /// A descriptor that becomes readable when the shell has ended.
    int ending() const { return mReport.number(); }

    struct Ending {
        enum class How {
            ended,      ///< `number` is a status in the format of waitpid()
            notStarted, ///< `number` is an errno value
            lostGuard,  ///< the guard was killed, and the shell with it; processes that the shell has started may go on
        };
        How how = How::ended;
        int number = 0;
    };
    /// How the shell ended. Called once, when ending() is readable.
    Ending takeEnding();
    /// Lets processes of the group that are left running go on after this object is destroyed.
    void release();

private:
    FileDescriptor mOutput, mErrors, mReport, mLife;
    pid_t mGuard = 0;
};

} // namespace quoddle::additions

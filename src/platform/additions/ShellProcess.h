// SPDX-License-Identifier: MIT
// A command line that sh runs in a process group of its own, which ends with us, whatever ends us.
//
// Decision: between us and the shell stands a guard, a copy of this process that does nothing but wait. It hears of our end through a pipe
// that only we hold, so that the group is ended alike when we give it up, leave, crash or are killed.
#pragma once

#include "platform/base/FileDescriptor.h"

#include <optional>
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

    /// Whether it could be started.
    bool isStarted() const { return mGuard > 0; }
    /// Descriptors to read the command's output and errors from. Processes that it has started may keep them open when the command has
    /// ended.
    int output() const { return mOutput.number(); }
    int errors() const { return mErrors.number(); }
    /// Can be read from when the shell has ended.
    int ending() const { return mReport.number(); }
    /// As waitpid() tells it, once; nothing when the guard has gone without a word.
    std::optional<int> takeStatus();
    /// Gives up the group: processes that the command has left running go on.
    void release();

private:
    FileDescriptor mOutput, mErrors, mReport, mLife;
    pid_t mGuard = 0;
};

} // namespace quoddle::additions

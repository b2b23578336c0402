// SPDX-License-Identifier: MIT
// Running a helper program of the system with arguments, without a shell, and reading what it prints.
#pragma once

#include "platform/ae/NSAppleEventManager.h"
#include "platform/base/FileDescriptor.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace quoddle::additions {

struct ProgramOutcome {
    int exitStatus = 0;
    std::string output;     ///< standard output, at most 1 MiB
    bool isRunning = false; ///< still, after the time it had; it goes on by itself
    bool wasCancelled = false;
    FileDescriptor process; ///< while it is running: for signals to it, also when its number has long been given to another one
};

/// Looked up in PATH; input is empty, standard error is not shown. Empty when there is no such program. A program that is still running
/// when the time is over is left alone.
std::optional<ProgramOutcome> runProgram(const std::vector<std::string>& command, std::chrono::milliseconds time,
                                         const AEHandlerContext& context);

} // namespace quoddle::additions

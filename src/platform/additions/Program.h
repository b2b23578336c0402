// SPDX-License-Identifier: MIT
// Runs a program of the system with arguments, without a shell, and reads its output.
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
    bool isRunning = false; ///< whether the time was up before the program ended; it goes on by itself
    bool wasCancelled = false;
    FileDescriptor process; ///< set while the program is running: signals sent with it cannot reach a later process of the same number
};

/// The program is looked for in PATH; its input is empty and its standard error is discarded. nullopt when it cannot be started. A program
/// that is still running when the time is up is left alone; a cancelled one is killed.
std::optional<ProgramOutcome> runProgram(const std::vector<std::string>& command, std::chrono::milliseconds time,
                                         const AEHandlerContext& context);

} // namespace quoddle::additions

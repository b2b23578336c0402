// SPDX-License-Identifier: MIT
// Tells whether the shell finds a command.
#pragma once

#include <string>

namespace quoddle::tool {

/// Whether the shell has the command itself, or finds a program of the name: by its path, or in the folders of PATH. True also for a path
/// that depends on the working folder.
bool isCommandHere(const std::string& command);

} // namespace quoddle::tool

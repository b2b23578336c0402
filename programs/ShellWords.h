// SPDX-License-Identifier: MIT
// Reads a line for the shell far enough to tell which programs it starts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quoddle::tool {

/// Stands in a line for a part that is known only when the script runs.
constexpr char kUnknownPart = '\x01';

/// The first words of the commands in a line, quotes taken off, in their order: behind pipes, separators and keywords, in substitutions,
/// and behind commands that start another one ("env", "nohup"). Left out are words with an unknown part, the line's own functions, and all
/// that follows a "case" or a here-document.
std::vector<std::string> commandsIn(std::string_view line);

/// Whether the shell has the command itself, or finds a program of the name: by its path, or in the folders of PATH. True also for a path
/// that depends on the working folder.
bool isCommandHere(const std::string& command);

} // namespace quoddle::tool

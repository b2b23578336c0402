// SPDX-License-Identifier: MIT
// Reads a line for the shell far enough to tell which programs it starts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quoddle::tool {

/// Stands in a line for a part that is known only when the script runs.
constexpr char kUnknownPart = '\x01';

/// The first words of the commands in a line, quotes taken off, in their order: behind pipes, separators and keywords, in the branches of a
/// "case", in substitutions, behind commands that start another one ("env", "xargs", "find -exec"), and in a text that is given to a shell
/// ("sh -c", "eval"). Left out are words with an unknown part and the line's own functions.
std::vector<std::string> commandsIn(std::string_view line);

} // namespace quoddle::tool

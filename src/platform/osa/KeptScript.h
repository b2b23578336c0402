// SPDX-License-Identifier: MIT
// The properties of a stored script last from one run to the next. They go back into the script's file, or, where that cannot be written,
// into a copy of the script in the user's data folder. The copy counts as long as the file is what it was made from: a script that is
// compiled anew starts anew.
#pragma once

#include "platform/base/OSStatus.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace quoddle {

/// The most bytes of a script that are read, as source or compiled.
constexpr std::size_t kLargestScript = std::size_t(128) << 20;

/// The file to load a compiled script from: the copy with the properties of its last run, or the script's own file when there is none.
/// "path to me" still is the script's own file: the caller sees to that.
std::string fileOfLastRun(const std::string& file);

/// Stores a script whose properties have changed. A file without the user's permission to write stays as it is. Errors: -108 for
/// more than `kLargestScript`, which nothing could read again; the status of writing the copy, after the file could not be written either.
OSStatus keepScript(const std::string& file, std::string_view bytes);

} // namespace quoddle

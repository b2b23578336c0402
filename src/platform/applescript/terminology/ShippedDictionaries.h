// SPDX-License-Identifier: MIT
// Which of the dictionaries that come with the system serves an application.
#pragma once

#include <string>
#include <string_view>

namespace quoddle {

/// The folder of our dictionaries: share/quoddle/dictionaries beside the folder of the running program.
std::string shippedDictionariesFolder();

/// The name of a file there for an application's name, or for its bundle identifier; empty when none serves it. The case of letters does
/// not matter.
std::string_view shippedDictionaryFor(std::string_view application, bool isBundleIdentifier);

} // namespace quoddle

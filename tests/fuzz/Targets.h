// SPDX-License-Identifier: MIT
// Every function that reads bytes from outside, each with good input to begin with.
#pragma once

#include <string>
#include <vector>

namespace quoddle::fuzz {

struct Target {
    const char* name;
    std::vector<std::string> (*seeds)();
    std::vector<std::string> words; ///< words of the input's language
    void (*read)(const std::string& bytes);
};

/// All targets. Must be called after the languages were registered and the application was made.
const std::vector<Target>& targets();

} // namespace quoddle::fuzz

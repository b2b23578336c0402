// SPDX-License-Identifier: MIT
// Everything that reads bytes from outside, each with good input to begin with.
#pragma once

#include <string>
#include <vector>

namespace quoddle::fuzz {

struct Target {
    const char* name;
    std::vector<std::string> (*seeds)();
    std::vector<std::string> words; ///< of the input's language
    void (*read)(const std::string& bytes);
};

/// The languages and the application must be there.
const std::vector<Target>& targets();

} // namespace quoddle::fuzz

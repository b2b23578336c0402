// SPDX-License-Identifier: MIT
// Tells what scripts need that is not on this system.
#pragma once

#include <string>
#include <vector>

namespace quoddle::tool {

struct CheckedFile {
    std::string name;  ///< in what is printed
    std::string path;  ///< of the script, applet, or "-"
    std::string fault; ///< why it cannot be read, when that is known already; else empty
};

/// Prints what is missing on standard output, in lines "FILE:LINE: …" or as one JSON array, and what could not be read or does not compile
/// on standard error, or in the array. Answers the exit status: 0 when all was read and nothing is missing, 1 otherwise. setUp() is not
/// needed.
int tellMissingParts(const std::vector<CheckedFile>& files, bool asJSON);

} // namespace quoddle::tool

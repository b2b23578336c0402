// SPDX-License-Identifier: MIT
#include "platform/base/Volumes.h"

#include "platform/base/File.h"

#include <algorithm>
#include <sstream>

namespace quoddle {

namespace {

constexpr std::size_t kLargestList = 1 << 20; // bytes
constexpr std::string_view kFolders[] = {"/media/", "/run/media/", "/mnt/"};

bool isOctal(char character) {
    return character >= '0' && character <= '7';
}

/// Decodes a field of the kernel's list, in which blanks, tabs, line ends and backslashes are written as a backslash and three octal
/// digits.
std::string unescaped(std::string_view field) {
    std::string plain;
    for (std::size_t i = 0; i < field.size(); ++i) {
        const std::string_view digits = field.substr(i + 1, 3);
        if (field[i] != '\\' || digits.size() < 3 || !std::all_of(digits.begin(), digits.end(), &isOctal)) {
            plain += field[i];
        } else {
            plain += static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0'));
            i += digits.size();
        }
    }
    return plain;
}

} // namespace

std::vector<std::string> mountedVolumes(std::size_t most) {
    std::vector<std::string> volumes;
    const auto list = readFile("/proc/self/mounts", kLargestList);
    std::istringstream mounts(list ? *list : std::string());
    for (std::string device, place, rest; volumes.size() < most && mounts >> device >> place && std::getline(mounts, rest);)
        if (std::any_of(std::begin(kFolders), std::end(kFolders), [&](std::string_view folder) { return place.starts_with(folder); }))
            volumes.push_back(unescaped(place));
    return volumes;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The considerations of scripts (case, diacriticals, …) under which texts are compared, as bits of the machine and of Apple events.
#pragma once

#include <cstdint>

namespace quoddle {

/// Bits of the mask "csig" of an Apple event.
enum Considering : std::uint32_t {
    kConsiderCase = 0x01,
    kConsiderDiacriticals = 0x02,
    kConsiderWhiteSpace = 0x04,
    kConsiderHyphens = 0x08,
    kConsiderExpansion = 0x10,
    kConsiderPunctuation = 0x20,
    kConsiderReplies = 0x40,
    kConsiderNumericStrings = 0x80,
};
constexpr std::uint32_t kDefaultConsiderations =
    kConsiderDiacriticals | kConsiderWhiteSpace | kConsiderHyphens | kConsiderExpansion | kConsiderPunctuation | kConsiderReplies;

/// The considerations that an event asks for: the lower half of its mask adds to the default ones, the upper half takes some away.
constexpr std::uint32_t consideringOfMask(std::uint32_t mask) {
    return (kDefaultConsiderations | (mask & 0xFFFF)) & ~(mask >> 16);
}

} // namespace quoddle

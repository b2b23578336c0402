// SPDX-License-Identifier: MIT
// A name without its accents, as it is compared when case and accents are ignored.
//
// Decision: what becomes of a character is asked once and kept in a table, a block of characters at a time, so that a name costs next to
// nothing. A name that comes to ASCII character by character keeps its case: all that a comparison by words looks at is in it. One thread.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace quoddle {

class NameReducer {
public:
    struct Reduced {
        std::string text; // UTF-8
        bool isPlain;     // true: ASCII, one character for each of the name, of the same sort and case. False: in small letters
    };
    /// Of valid UTF-8. The result is good until the next call.
    const Reduced& reduce(std::string_view name);

private:
    static constexpr std::size_t kBlockSize = 256, kBlockCount = 256; // what lies beyond is reduced each time

    struct Character {
        std::array<char, 3> folded; // UTF-8, filled with zeros; nothing for an accent
        char plain;                 // 0: has none
        bool isLonger;              // than what has room in `folded`
    };
    using Block = std::array<Character, kBlockSize>;
    const Character& characterFor(char16_t unit);

    std::array<std::unique_ptr<Block>, kBlockCount> mBlocks;
    Reduced mReduced;
    std::string mPlain;
};

} // namespace quoddle

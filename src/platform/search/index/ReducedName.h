// SPDX-License-Identifier: MIT
// Reduces names to the form in which they are compared when case and accents are ignored.
//
// Decision: the reduced form of a character is computed once and kept in a table, a block of characters at a time, so that a name takes
// almost no time. A name that reduces to one ASCII character for each of its own keeps its case, because comparisons by words need it. One
// thread.
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
        // ASCII, with one character for each of the name's, of the same class and case; otherwise the text is in lower case
        bool isPlain;
    };
    /// `name` is valid UTF-8. The result is valid until the next call.
    const Reduced& reduce(std::string_view name);

private:
    static constexpr std::size_t kBlockSize = 256, kBlockCount = 256; // characters beyond the table are reduced each time

    struct Character {
        std::array<char, 3> folded; // UTF-8, padded with zeros; empty for an accent
        char plain;                 // 0 when the character has no plain form
        bool isLonger;              // the reduced form does not fit `folded`
    };
    using Block = std::array<Character, kBlockSize>;
    const Character& characterFor(char16_t unit);

    std::array<std::unique_ptr<Block>, kBlockCount> mBlocks;
    Reduced mReduced;
    std::string mPlain;
};

} // namespace quoddle

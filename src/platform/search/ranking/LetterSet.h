// SPDX-License-Identifier: MIT
// The set of letters and digits in a name. Most names lack a letter of the term, so comparing two numbers excludes them.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace quoddle {

/// One bit for each ASCII letter, whatever its case, and one for each pair of digits 0 and 1, 2 and 3, and so on.
using LetterSet = std::uint32_t;

/// Marks a name that is not plain (isPlainName()). Such a name has all bits set, so no term excludes it; no term has this bit.
constexpr LetterSet kNotPlainBit = LetterSet(1) << 31;
constexpr LetterSet kNotPlain = ~LetterSet(0);

/// For names and terms in which only ASCII letters can match ASCII letters. Other bytes are ignored.
constexpr LetterSet lettersOf(std::string_view name) {
    constexpr auto kSets = [] {
        std::array<LetterSet, 256> sets{};
        for (std::size_t i = 0; i < 26; ++i)
            sets['a' + i] = sets['A' + i] = LetterSet(1) << i;
        for (std::size_t i = 0; i < 10; ++i)
            sets['0' + i] = LetterSet(1) << (26 + i / 2);
        return sets;
    }();
    LetterSet letters = 0;
    for (const char c : name)
        letters |= kSets[static_cast<unsigned char>(c)];
    return letters;
}

constexpr bool hasLetters(LetterSet name, LetterSet term) {
    return (name & term) == term;
}

} // namespace quoddle

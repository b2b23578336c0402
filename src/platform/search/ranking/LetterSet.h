// SPDX-License-Identifier: MIT
// Which letters and digits are in a name: most names lack one that a term has, and are passed over by looking at one number.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace quoddle {

/// A bit for each letter of ASCII, upper and lower case being the same, and for each two digits that follow each other.
using LetterSet = std::uint32_t;

/// Instead of the letters of a name that is not plain: see isPlainName(). No term has this bit, which is set there along with all others.
constexpr LetterSet kNotPlainBit = LetterSet(1) << 31;
constexpr LetterSet kNotPlain = ~LetterSet(0);

/// Of a name in which everything that counts as a letter of ASCII is one. Other bytes count for nothing.
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

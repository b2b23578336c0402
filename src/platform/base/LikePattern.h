// SPDX-License-Identifier: MIT
// A pattern with wildcards, for LIKE in predicates: "*" stands for any number of characters, "?" for one character, and a backslash makes
// "*", "?" or "\" stand for itself.
//
// Decision: the pattern is cut at its "*" into pieces once. A text is then searched from left to right for each piece, and the first
// occurrence is taken, because a later one never matches better. So a match costs at most the text's length times the longest piece's.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quoddle {

class LikePattern {
public:
    enum Option : std::uint8_t {
        ignoresCase = 1,
        ignoresDiacritics = 2,
        /// The pattern matches any part of the text that begins and ends at a border of words: beside a character that is neither letter
        /// nor digit, between a small letter and a capital, between a letter and a digit. Without this option it matches only the whole
        /// text.
        matchesWords = 4,
    };

    /// `options` is a sum of Option values.
    LikePattern(std::u16string_view pattern, std::uint8_t options);

    /// May be called on any thread.
    bool matches(std::u16string_view text) const;
    /// As matches(), but many times faster, for a text that has only ASCII characters.
    bool matchesASCII(std::string_view text) const;
    /// The longest part without wildcards, reduced as the options say: every text that matches has it as a part when reduced in the same
    /// way.
    std::u16string longestLiteral() const;

private:
    using Piece = std::vector<char16_t>; // with kAnyUnit for "?"
    static constexpr std::size_t kNowhere = SIZE_MAX;
    class Text;
    class ASCIIText;

    template<class AnyText>
    bool matchesText(const AnyText& text) const;
    template<class AnyText>
    static std::size_t find(const Piece& piece, const AnyText& text, std::size_t from, bool startsWord, bool endsWord);
    template<class AnyText>
    static bool isAt(const Piece& piece, const AnyText& text, std::size_t at, std::size_t& end);

    const std::uint8_t mOptions;
    std::vector<Piece> mPieces; // at least one; a "*" stands between each two
};

} // namespace quoddle

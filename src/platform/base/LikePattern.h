// SPDX-License-Identifier: MIT
// A pattern with wildcards, as LIKE of predicates has it: "*" stands for any characters or none, "?" for one character, and a backslash
// before one of the three for that sign itself.
//
// Decision: the pattern is cut at its "*" into pieces once; a text is then walked from the left, each piece taken at the first place it
// has, which is never worse than a later one. So no text costs more than its length times that of the longest piece.
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
        /// The pattern may lie anywhere in the text if it begins and ends where words do: beside a sign that is neither letter nor digit,
        /// between a small letter and a capital, between a letter and a digit. Without it the pattern covers the whole text.
        matchesWords = 4,
    };

    /// `options`: a sum of Option values.
    LikePattern(std::u16string_view pattern, std::uint8_t options);

    /// Any thread.
    bool matches(std::u16string_view text) const;
    /// The same, many times faster, for a text of ASCII characters alone.
    bool matchesASCII(std::string_view text) const;
    /// The longest part between wildcards, without what the options ignore: every text that matches, reduced likewise, has it in it.
    std::u16string longestLiteral() const;

private:
    using Piece = std::vector<char16_t>; // kAnyUnit for "?"
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
    std::vector<Piece> mPieces; // at least one; "*" stands between two of them
};

} // namespace quoddle

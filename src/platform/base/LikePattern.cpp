// SPDX-License-Identifier: MIT
#include "platform/base/LikePattern.h"

#include "platform/base/Considering.h"
#include "platform/base/TextSearch.h"

#include <algorithm>
#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace quoddle {

namespace {

constexpr char16_t kAnyUnit = 0xFFFF; // no character, so it occurs in no text

std::uint32_t consideringFor(std::uint8_t options) {
    std::uint32_t considering = kDefaultConsiderations | kConsiderCase;
    if (options & LikePattern::ignoresCase)
        considering &= ~std::uint32_t(kConsiderCase);
    if (options & LikePattern::ignoresDiacritics)
        considering &= ~std::uint32_t(kConsiderDiacriticals);
    return considering;
}

enum class Sign : std::uint8_t { letter, digit, other };

Sign signOf(UChar32 c) {
    return u_isdigit(c) ? Sign::digit : u_isalpha(c) || u_charType(c) == U_NON_SPACING_MARK ? Sign::letter : Sign::other;
}

constexpr bool isSmall(char c) {
    return c >= 'a' && c <= 'z';
}

constexpr bool isCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

constexpr Sign signOfASCII(char c) {
    return isSmall(c) || isCapital(c) ? Sign::letter : c >= '0' && c <= '9' ? Sign::digit : Sign::other;
}

bool isBetweenWords(std::u16string_view text, std::size_t place) {
    if (place == 0 || place >= text.size())
        return true;
    UChar32 before, after;
    const auto length = static_cast<std::int32_t>(text.size());
    std::int32_t at = static_cast<std::int32_t>(place);
    U16_GET(text.data(), 0, at, length, after);
    U16_PREV(text.data(), 0, at, before);
    const Sign left = signOf(before), right = signOf(after);
    return left == Sign::other || left != right || (u_islower(before) && u_isupper(after));
}

} // namespace

/// A text reduced to what the options compare, with the borders of its words.
class LikePattern::Text {
public:
    Text(std::u16string_view text, std::uint8_t options) : mWhole(text), mReduced(reduceText(text, consideringFor(options))) {}

    std::size_t size() const { return mReduced.units.size(); }
    char16_t operator[](std::size_t at) const { return mReduced.units[at]; }
    /// A place between two units of one character is not between words.
    bool isBetweenWords(std::size_t at) const {
        const auto& places = mReduced.places;
        return (at == 0 || places[at - 1] != places[at]) && quoddle::isBetweenWords(mWhole, places[at]);
    }

private:
    const std::u16string_view mWhole;
    const ReducedText mReduced;
};

/// A text of ASCII characters, compared without a reduced copy.
class LikePattern::ASCIIText {
public:
    ASCIIText(std::string_view text, std::uint8_t options) : mText(text), mSmall(options & ignoresCase ? 'a' - 'A' : 0) {}

    std::size_t size() const { return mText.size(); }
    char16_t operator[](std::size_t at) const {
        const char c = mText[at];
        return static_cast<unsigned char>(c + (isCapital(c) ? mSmall : 0));
    }
    bool isBetweenWords(std::size_t at) const {
        if (at == 0 || at >= mText.size())
            return true;
        const char before = mText[at - 1], after = mText[at];
        const Sign left = signOfASCII(before);
        return left == Sign::other || left != signOfASCII(after) || (isSmall(before) && isCapital(after));
    }

private:
    const std::string_view mText;
    const int mSmall; // added to a capital to get the character that is compared
};

LikePattern::LikePattern(std::u16string_view pattern, std::uint8_t options) : mOptions(options), mPieces(1) {
    std::u16string literal;
    const auto endLiteral = [&] {
        const ReducedText reduced = reduceText(literal, consideringFor(options));
        mPieces.back().insert(mPieces.back().end(), reduced.units.begin(), reduced.units.end());
        literal.clear();
    };
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char16_t unit = pattern[i];
        if (unit == u'\\' && i + 1 < pattern.size() && std::u16string_view(u"*?\\").find(pattern[i + 1]) != std::u16string_view::npos) {
            literal += pattern[++i];
        } else if (unit == u'?') {
            endLiteral();
            mPieces.back().push_back(kAnyUnit);
        } else if (unit == u'*') {
            endLiteral();
            mPieces.emplace_back();
        } else {
            literal += unit;
        }
    }
    endLiteral();
}

template<class AnyText>
bool LikePattern::isAt(const Piece& piece, const AnyText& text, std::size_t at, std::size_t& end) {
    for (const char16_t wanted : piece) {
        if (at >= text.size() || (wanted != kAnyUnit && text[at] != wanted))
            return false;
        at += wanted == kAnyUnit && U16_IS_LEAD(text[at]) && at + 1 < text.size() ? 2 : 1;
    }
    end = at;
    return true;
}

/// The place behind the first occurrence of the piece, or kNowhere.
template<class AnyText>
std::size_t LikePattern::find(const Piece& piece, const AnyText& text, std::size_t from, bool startsWord, bool endsWord) {
    const char16_t first = piece.empty() ? kAnyUnit : piece.front();
    for (std::size_t at = from; at <= text.size(); ++at) {
        if (first != kAnyUnit && (at == text.size() || text[at] != first))
            continue;
        std::size_t end;
        if (isAt(piece, text, at, end) && (!startsWord || text.isBetweenWords(at)) && (!endsWord || text.isBetweenWords(end)))
            return end;
    }
    return kNowhere;
}

template<class AnyText>
bool LikePattern::matchesText(const AnyText& text) const {
    const bool byWords = mOptions & matchesWords;
    const Piece& first = mPieces.front();
    const bool isOnly = mPieces.size() == 1;
    std::size_t at = 0;
    if (byWords) {
        at = find(first, text, 0, true, isOnly);
        if (isOnly || at == kNowhere)
            return at != kNowhere;
    } else if (!isAt(first, text, 0, at)) {
        return false;
    } else if (isOnly) {
        return at == text.size();
    }
    for (std::size_t i = 1; i + 1 < mPieces.size(); ++i)
        if (at = find(mPieces[i], text, at, false, false); at == kNowhere)
            return false;
    const Piece& last = mPieces.back();
    if (byWords)
        return last.empty() || find(last, text, at, false, true) != kNowhere;
    for (std::size_t start = at; start <= text.size(); ++start) // "?" matches one unit or two, so the length of a match is not known
        if (std::size_t end; isAt(last, text, start, end) && end == text.size())
            return true;
    return false;
}

bool LikePattern::matches(std::u16string_view text) const {
    return matchesText(Text(text, mOptions));
}

std::u16string LikePattern::longestLiteral() const {
    std::u16string longest, literal;
    for (const Piece& piece : mPieces) {
        literal.clear();
        for (const char16_t unit : piece) {
            literal = unit == kAnyUnit ? std::u16string() : literal + unit;
            if (literal.size() > longest.size())
                longest = literal;
        }
    }
    return longest;
}

bool LikePattern::matchesASCII(std::string_view text) const {
    return matchesText(ASCIIText(text, mOptions));
}

} // namespace quoddle

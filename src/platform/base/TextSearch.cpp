// SPDX-License-Identifier: MIT
#include "platform/base/TextSearch.h"

#include "platform/base/Considering.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <functional>
#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/utf16.h>

namespace quoddle {

namespace {

constexpr std::uint32_t kAllUnits =
    kConsiderDiacriticals | kConsiderWhiteSpace | kConsiderHyphens | kConsiderExpansion | kConsiderPunctuation;

constexpr struct {
    UChar32 letter;
    std::u16string_view letters;
} kExpansions[] = {
    {U'Æ', u"AE"}, {U'æ', u"ae"}, {U'Œ', u"OE"}, {U'œ', u"oe"},  {U'ẞ', u"SS"},  {U'ß', u"ss"}, {U'Ĳ', u"IJ"}, {U'ĳ', u"ij"},
    {U'ﬀ', u"ff"}, {U'ﬁ', u"fi"}, {U'ﬂ', u"fl"}, {U'ﬃ', u"ffi"}, {U'ﬄ', u"ffl"}, {U'ﬅ', u"st"}, {U'ﬆ', u"st"},
};

bool isIgnored(UChar32 c, std::uint32_t considering) {
    if (!(considering & kConsiderWhiteSpace) && u_isUWhiteSpace(c))
        return true;
    const bool isDash = u_charType(c) == U_DASH_PUNCTUATION;
    if (!(considering & kConsiderHyphens) && isDash)
        return true;
    return !(considering & kConsiderPunctuation) && u_ispunct(c) && !isDash;
}

void appendReduced(ReducedText& reduced, UChar32 c, std::uint32_t place, std::uint32_t considering) {
    if (isIgnored(c, considering))
        return;
    UErrorCode status = U_ZERO_ERROR;
    char16_t parts[24];
    std::int32_t count = 0;
    if (!(considering & kConsiderExpansion))
        for (const auto& row : kExpansions)
            if (row.letter == c)
                count = static_cast<std::int32_t>(row.letters.copy(parts, row.letters.size()));
    if (count == 0 && !(considering & kConsiderDiacriticals)) {
        count = unorm2_getDecomposition(unorm2_getNFDInstance(&status), c, parts, 24, &status);
        if (U_FAILURE(status))
            count = 0;
    }
    if (count <= 0) {
        count = 0;
        U16_APPEND_UNSAFE(parts, count, c);
    }
    for (std::int32_t i = 0; i < count;) {
        UChar32 part;
        U16_NEXT(parts, i, count, part);
        if (!(considering & kConsiderDiacriticals) && u_charType(part) == U_NON_SPACING_MARK)
            continue;
        if (!(considering & kConsiderCase))
            part = u_foldCase(part, U_FOLD_CASE_DEFAULT);
        char16_t units[2];
        std::int32_t length = 0;
        U16_APPEND_UNSAFE(units, length, part);
        for (std::int32_t k = 0; k < length; ++k) {
            reduced.units += units[k];
            reduced.places.push_back(place);
        }
    }
}

} // namespace

bool considersAllUnits(std::uint32_t considering) {
    return (considering & kAllUnits) == kAllUnits;
}

bool isASCII(std::u16string_view text) {
    return std::all_of(text.begin(), text.end(), [](char16_t c) { return c < 0x80; });
}

/// The ASCII letter for a unit that case folding turns into one. Beyond ASCII these are only the Kelvin sign and the long s.
static char16_t foldedToASCII(char16_t c) {
    return c < 0x80 ? foldedASCII(c) : c == 0x212A ? u'k' : c == 0x17F ? u's' : c;
}

ReducedText reduceText(std::u16string_view text, std::uint32_t considering) {
    ReducedText reduced;
    reduced.units.reserve(text.size());
    reduced.places.reserve(text.size() + 1);
    const auto length = static_cast<std::int32_t>(text.size());
    for (std::int32_t i = 0; i < length;) {
        const std::int32_t place = i;
        UChar32 c;
        U16_NEXT(text.data(), i, length, c);
        appendReduced(reduced, c, static_cast<std::uint32_t>(place), considering);
    }
    reduced.places.push_back(static_cast<std::uint32_t>(text.size()));
    return reduced;
}

const ReducedText& TextSearch::reduced() {
    if (!mReduced)
        mReduced = reduceText(mWhole, mConsidering);
    return *mReduced;
}

std::size_t TextSearch::find(std::u16string_view part, std::size_t start, std::size_t& length) {
    length = part.size();
    if (start > mWhole.size())
        return kNotFound;
    if (part.empty())
        return start;
    if (considersAllUnits(mConsidering)) {
        if (mConsidering & kConsiderCase)
            return findSequence(mWhole, part, start, std::equal_to());
        if (isASCII(part))
            return findSequence(mWhole, part, start, [](char16_t a, char16_t b) { return foldedToASCII(a) == foldedToASCII(b); });
    }
    const ReducedText needle = reduceText(part, mConsidering);
    if (needle.units.empty()) {
        length = 0;
        return start;
    }
    const std::vector<std::uint32_t>& places = reduced().places;
    const std::u16string_view units = reduced().units;
    const auto first = static_cast<std::size_t>(std::lower_bound(places.begin(), places.end(), start) - places.begin());
    const auto isWhole = [&](std::size_t at) {
        const std::size_t end = at + needle.units.size();
        return (at == 0 || places[at - 1] != places[at]) && places[end - 1] != places[end];
    };
    const std::size_t at = findSequence(units, std::u16string_view(needle.units), first, std::equal_to(), isWhole);
    if (at == kNotFound)
        return kNotFound;
    length = places[at + needle.units.size()] - places[at];
    return places[at];
}

/// Whether a match of `part` covers exactly as many units as `part` has, so that only so many units of a text need to be compared.
static bool matchesUnitByUnit(std::u16string_view part, std::uint32_t considering) {
    return considersAllUnits(considering) && (considering & kConsiderCase || isASCII(part));
}

bool startsWithText(std::u16string_view whole, std::u16string_view part, std::uint32_t considering) {
    if (matchesUnitByUnit(part, considering))
        whole = whole.substr(0, part.size());
    const ReducedText text = reduceText(whole, considering), wanted = reduceText(part, considering);
    const std::size_t end = wanted.units.size();
    return text.units.starts_with(wanted.units) && (end == 0 || text.places[end - 1] != text.places[end]);
}

bool endsWithText(std::u16string_view whole, std::u16string_view part, std::uint32_t considering) {
    if (matchesUnitByUnit(part, considering))
        whole = whole.substr(whole.size() - std::min(whole.size(), part.size()));
    const ReducedText text = reduceText(whole, considering), wanted = reduceText(part, considering);
    if (!text.units.ends_with(wanted.units))
        return false;
    const std::size_t start = text.units.size() - wanted.units.size();
    return wanted.units.empty() || start == 0 || text.places[start - 1] != text.places[start];
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/search/ranking/NameRanges.h"

#include "platform/base/Text.h"
#include "platform/search/ranking/EightUnits.h"

#include <algorithm>
#include <unicode/ubrk.h>
#include <unicode/uregex.h>

namespace quoddle {

namespace {

constexpr std::int32_t kTimeLimit = 10; // steps of the expression's engine, each about a millisecond
constexpr int kMostTimeouts = 5;
constexpr std::size_t kUsualName = 256;    // UTF-16 units
constexpr std::size_t kLongestTerm = 1000; // of a longer one the expression would be larger than any name is worth

/// The characters that are not ASCII but count as some, or several, when upper and lower case are the same: sharp s as "ss", the Kelvin
/// sign as "k", ligatures. Source: CaseFolding.txt of the Unicode character database, kinds C and F.
constexpr std::u16string_view kFoldedToASCII =
    u"\u00DF\u0130\u0149\u017F\u01F0\u1E96\u1E97\u1E98\u1E99\u1E9A\u1E9E\u212A\uFB00\uFB01\uFB02\uFB03\uFB04\uFB05\uFB06";

bool isPlainSign(char16_t unit) {
    return unit >= u' ' && unit < 0x7F && std::u16string_view(u"\\^$.|?*+()[]{}").find(unit) == std::u16string_view::npos;
}

/// Whether none of eight or more units stands for ASCII characters though it is none itself; some that do not are refused along with them.
bool isNoneFoldedToASCII(std::u16string_view name) {
    EightUnits folded{};
    forEachEight(name, [&](std::size_t at) {
        const EightUnits units = eightUnitsAt(name.data() + at);
        folded |= EightUnits(units == 0xDF) | EightUnits((units >= 0x130) & (units <= 0x1F0)) | EightUnits(units >= 0x1E96);
    });
    return !isAnySet(folded);
}

/// Eight or more units in small letters. True when all are plain ASCII.
bool putInSmallLetters(std::u16string_view name, char16_t* small) {
    EightUnits foreign{};
    forEachEight(name, [&](std::size_t at) {
        EightUnits units = eightUnitsAt(name.data() + at);
        foreign |= EightUnits(units < u' ') | EightUnits(units > u'~');
        units |= EightUnits((units >= u'A') & (units <= u'Z')) & 0x20;
        std::memcpy(small + at, &units, sizeof units);
    });
    return !isAnySet(foreign);
}

/// Composed character sequences.
std::vector<std::u16string_view> charactersOf(std::u16string_view text) {
    std::vector<std::u16string_view> characters;
    UErrorCode status = U_ZERO_ERROR;
    UBreakIterator* breaks = ubrk_open(UBRK_CHARACTER, "", text.data(), static_cast<std::int32_t>(text.size()), &status);
    if (U_SUCCESS(status))
        for (std::int32_t start = ubrk_first(breaks), end = ubrk_next(breaks); end != UBRK_DONE; start = end, end = ubrk_next(breaks))
            characters.push_back(text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)));
    ubrk_close(breaks);
    return characters;
}

/// A piece that goes on where the last one ended belongs to it.
void append(NameRanges& ranges, std::uint64_t location, std::uint64_t length) {
    if (!ranges.empty() && ranges.back().location + ranges.back().length == location)
        ranges.back().length += length;
    else
        ranges.push_back({location, length});
}

std::u16string inSmallLetters(std::u16string_view text) {
    std::u16string small(text);
    std::transform(small.begin(), small.end(), small.begin(), &foldedASCII);
    return small;
}

} // namespace

TermParts splitTerm(std::u16string_view term) {
    const std::size_t slash = term.rfind(u'/');
    const std::size_t start = slash == std::u16string_view::npos ? 0 : slash + 1;
    const std::size_t dot = term.rfind(u'.');
    if (dot == std::u16string_view::npos || dot <= start || dot + 1 == term.size())
        return {term, {}};
    return {term.substr(0, dot), term.substr(dot + 1)};
}

/// Base and extension as the expression has them: a term that is a dot and an extension has no base.
static TermParts partsOfSpreadTerm(std::u16string_view term) {
    const TermParts parts = splitTerm(term);
    if (parts.extension.empty() && parts.base.starts_with(u'.'))
        return {{}, parts.base.substr(1)};
    return parts;
}

std::u16string SpreadTerm::expressionFor(std::u16string_view term) {
    const auto [base, extension] = partsOfSpreadTerm(term);
    std::u16string extensionPart;
    if (!extension.empty())
        extensionPart.append(u".*?(\\.").append(extension).append(u")");
    if (base.size() <= kHead)
        return std::u16string(u"(").append(base).append(u")").append(extensionPart);
    std::u16string pattern =
        std::u16string(u".*(").append(base).append(u")").append(extensionPart).append(u"|(").append(base.substr(0, kHead));
    for (const std::u16string_view character : charactersOf(base.substr(kHead)))
        pattern.append(u").*?(").append(character);
    return pattern.append(u")").append(extensionPart);
}

SpreadTerm::SpreadTerm(std::u16string_view term) : mTerm(term) {
    const auto [base, extension] = partsOfSpreadTerm(mTerm);
    mBase = inSmallLetters(base);
    if (!extension.empty())
        mSuffix = u'.' + inSmallLetters(extension);
    for (std::size_t i = 0; i < kHead && i < mBase.size(); ++i) {
        mHead[i].small = EightUnits{} + mBase[i];
        const std::uint16_t caseBit = mBase[i] >= u'a' && mBase[i] <= u'z' ? 0x20 : 0;
        mHead[i].caseBit = EightUnits{} + caseBit;
    }
    mIsPlain = std::all_of(base.begin(), base.end(), isPlainSign) && std::all_of(extension.begin(), extension.end(), isPlainSign);
}

SpreadTerm::~SpreadTerm() = default;

void SpreadTerm::Close::operator()(URegularExpression* expression) const {
    uregex_close(expression);
}

NameRanges SpreadTerm::rangesIn(std::u16string_view name) {
    if (!mIsPlain)
        return rangesByExpression(name);
    if (lacksHead(name))
        return {};
    char16_t small[kUsualName];
    if (name.size() < kEight || name.size() > kUsualName)
        return isPlain(name) ? rangesInPlainName(inSmallLetters(name)) : rangesByExpression(name);
    if (!putInSmallLetters(name, small) && !isPlain(name))
        return rangesByExpression(name);
    return rangesInPlainName({small, name.size()});
}

/// Most names of a large list end here, so that a few instructions look at eight characters.
bool SpreadTerm::lacksHead(std::u16string_view name) const {
    if (mBase.size() < kHead || name.size() <= kEight)
        return false;
    EightUnits all{}, found{};
    forEachEight(name.substr(1), [&](std::size_t at) {
        const EightUnits here = eightUnitsAt(name.data() + at), next = eightUnitsAt(name.data() + at + 1);
        all |= here | next;
        found |= EightUnits((here | mHead[0].caseBit) == mHead[0].small) & EightUnits((next | mHead[1].caseBit) == mHead[1].small);
    });
    return !isAnySet(found) && (!isAnySet(all & 0xFF80) || isNoneFoldedToASCII(name));
}

/// In a plain name the expression takes for the same only upper and lower case of ASCII letters, and "." stands for each character.
bool SpreadTerm::isPlain(std::u16string_view name) {
    constexpr std::u16string_view kLineEnds = u"\u0085\u2028\u2029";
    return std::all_of(name.begin(), name.end(), [=](char16_t unit) {
        return unit < 0x7F ? unit >= u' '
                           : unit != 0x7F && kLineEnds.find(unit) == kLineEnds.npos && kFoldedToASCII.find(unit) == kFoldedToASCII.npos;
    });
}

/// `name`: in small letters.
NameRanges SpreadTerm::rangesInPlainName(std::u16string_view name) const {
    constexpr auto kNone = std::u16string_view::npos;
    NameRanges ranges;
    const auto appendSuffix = [&](std::size_t from) {
        if (mSuffix.empty())
            return true;
        const std::size_t at = name.find(mSuffix, from);
        if (at == kNone)
            return false;
        append(ranges, at, mSuffix.size());
        return true;
    };
    if (mBase.size() <= kHead) {
        const std::size_t at = name.find(mBase);
        if (at == kNone)
            return {};
        append(ranges, at, mBase.size());
        return appendSuffix(at + mBase.size()) ? ranges : NameRanges();
    }
    const std::size_t lastSuffix = mSuffix.empty() ? name.size() : name.rfind(mSuffix);
    if (lastSuffix == kNone)
        return {};
    std::size_t at = name.find(std::u16string_view(mBase).substr(0, kHead));
    if (at == kNone)
        return {};
    // Most names lack one of the pieces, and then they do not have the whole either.
    std::size_t end = at + kHead;
    for (const char16_t wanted : std::u16string_view(mBase).substr(kHead)) {
        end = name.find(wanted, end);
        if (end++ == kNone)
            return {};
    }
    if (!mSuffix.empty() && name.find(mSuffix, end) == kNone)
        return {};
    if (const std::size_t whole = name.substr(at, lastSuffix - std::min(at, lastSuffix)).rfind(mBase); whole != kNone) {
        append(ranges, at + whole, mBase.size());
        appendSuffix(at + whole + mBase.size());
        return ranges;
    }
    append(ranges, at, kHead);
    at += kHead;
    for (const char16_t wanted : std::u16string_view(mBase).substr(kHead)) {
        at = name.find(wanted, at);
        append(ranges, at++, 1);
    }
    appendSuffix(at);
    return ranges;
}

NameRanges SpreadTerm::rangesByExpression(std::u16string_view name) {
    UErrorCode status = U_ZERO_ERROR;
    if (!mIsCompiled) {
        mIsCompiled = true;
        const std::u16string pattern = mTerm.size() <= kLongestTerm ? expressionFor(mTerm) : std::u16string();
        if (!pattern.empty())
            mExpression.reset(
                uregex_open(pattern.data(), static_cast<std::int32_t>(pattern.size()), UREGEX_CASE_INSENSITIVE, nullptr, &status));
        if (mExpression)
            uregex_setTimeLimit(mExpression.get(), kTimeLimit, &status);
    }
    if (!mExpression || mTimeouts >= kMostTimeouts)
        return {};
    uregex_setText(mExpression.get(), name.data(), static_cast<std::int32_t>(name.size()), &status);
    const bool isFound = uregex_find(mExpression.get(), 0, &status);
    if (status == U_REGEX_TIME_OUT || status == U_REGEX_STACK_OVERFLOW)
        ++mTimeouts;
    if (U_FAILURE(status) || !isFound)
        return {};
    NameRanges ranges;
    const std::int32_t groups = uregex_groupCount(mExpression.get(), &status);
    for (std::int32_t group = 1; group <= groups; ++group)
        if (const std::int32_t start = uregex_start(mExpression.get(), group, &status); start >= 0)
            append(ranges, static_cast<std::uint64_t>(start),
                   static_cast<std::uint64_t>(uregex_end(mExpression.get(), group, &status) - start));
    return ranges;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/search/ranking/NameRanges.h"

#include "platform/base/Text.h"

#include <algorithm>
#include <unicode/ubrk.h>
#include <unicode/uregex.h>

namespace quoddle {

namespace {

constexpr std::size_t kHead = 2;        // characters at the beginning of a spread term that stay together
constexpr std::int32_t kTimeLimit = 10; // steps of the expression's engine, each about a millisecond
constexpr int kMostTimeouts = 5;
constexpr std::size_t kLongestTerm = 1000; // of a longer one the expression would be larger than any name is worth

bool isPlainSign(char16_t unit) {
    return unit >= u' ' && unit < 0x7F && std::u16string_view(u"\\^$.|?*+()[]{}").find(unit) == std::u16string_view::npos;
}

std::u16string inSmallLetters(std::u16string_view text) {
    std::u16string small(text);
    std::transform(small.begin(), small.end(), small.begin(), &foldedASCII);
    return small;
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

std::size_t findSmall(std::u16string_view name, std::u16string_view small, std::size_t from) {
    for (std::size_t at = from; at + small.size() <= name.size(); ++at) {
        std::size_t i = 0;
        while (i < small.size() && foldedASCII(name[at + i]) == small[i])
            ++i;
        if (i == small.size())
            return at;
    }
    return std::u16string_view::npos;
}

/// The last place that ends at or before `end`.
std::size_t findLastSmall(std::u16string_view name, std::u16string_view small, std::size_t end) {
    for (std::size_t at = end >= small.size() ? end - small.size() + 1 : 0; at-- > 0;)
        if (findSmall(name.substr(at, small.size()), small, 0) == 0)
            return at;
    return std::u16string_view::npos;
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
    mIsPlain = std::all_of(base.begin(), base.end(), isPlainSign) && std::all_of(extension.begin(), extension.end(), isPlainSign);
}

SpreadTerm::~SpreadTerm() = default;

void SpreadTerm::Close::operator()(URegularExpression* expression) const {
    uregex_close(expression);
}

NameRanges SpreadTerm::rangesIn(std::u16string_view name) {
    return mIsPlain && isPlain(name) ? rangesInPlainName(name) : rangesByExpression(name);
}

/// Among plain characters upper and lower case are all that the expression takes for the same, and "." stands for each.
bool SpreadTerm::isPlain(std::u16string_view name) const {
    return std::all_of(name.begin(), name.end(), [](char16_t unit) { return unit >= u' ' && unit < 0x7F; });
}

NameRanges SpreadTerm::rangesInPlainName(std::u16string_view name) const {
    constexpr auto kNone = std::u16string_view::npos;
    NameRanges ranges;
    const auto appendSuffix = [&](std::size_t from) {
        if (mSuffix.empty())
            return true;
        const std::size_t at = findSmall(name, mSuffix, from);
        if (at == kNone)
            return false;
        append(ranges, at, mSuffix.size());
        return true;
    };
    if (mBase.size() <= kHead) {
        const std::size_t at = findSmall(name, mBase, 0);
        if (at == kNone)
            return {};
        append(ranges, at, mBase.size());
        return appendSuffix(at + mBase.size()) ? ranges : NameRanges();
    }
    const std::size_t lastSuffix = mSuffix.empty() ? name.size() : findLastSmall(name, mSuffix, name.size());
    if (lastSuffix == kNone)
        return {};
    std::size_t at = findSmall(name, std::u16string_view(mBase).substr(0, kHead), 0);
    if (at == kNone)
        return {};
    if (const std::size_t whole = findLastSmall(name, mBase, lastSuffix); whole != kNone) {
        append(ranges, whole, mBase.size());
        appendSuffix(whole + mBase.size());
        return ranges;
    }
    append(ranges, at, kHead);
    at += kHead;
    for (const char16_t wanted : std::u16string_view(mBase).substr(kHead)) {
        while (at < name.size() && foldedASCII(name[at]) != wanted)
            ++at;
        if (at == name.size())
            return {};
        append(ranges, at++, 1);
    }
    return appendSuffix(at) ? ranges : NameRanges();
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

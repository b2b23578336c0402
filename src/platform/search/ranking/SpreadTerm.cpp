// SPDX-License-Identifier: MIT
#include "platform/search/ranking/SpreadTerm.h"

#include <unicode/ubrk.h>
#include <unicode/uregex.h>

namespace quoddle {

namespace {

constexpr std::int32_t kTimeLimit = 10; // in steps of the expression engine, about a millisecond each
constexpr int kMostTimeouts = 5;
constexpr std::size_t kLongestTerm = 1000; // the expression of a longer term would be too large for its use

/// The composed character sequences of the text.
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

} // namespace

TermParts splitTerm(std::u16string_view term) {
    const std::size_t slash = term.rfind(u'/');
    const std::size_t start = slash == std::u16string_view::npos ? 0 : slash + 1;
    const std::size_t dot = term.rfind(u'.');
    if (dot == std::u16string_view::npos || dot <= start || dot + 1 == term.size())
        return {term, {}};
    return {term.substr(0, dot), term.substr(dot + 1)};
}

TermParts partsOfSpreadTerm(std::u16string_view term) {
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
    if (base.size() <= PlainTerm::kHead)
        return std::u16string(u"(").append(base).append(u")").append(extensionPart);
    std::u16string pattern =
        std::u16string(u".*(").append(base).append(u")").append(extensionPart).append(u"|(").append(base.substr(0, PlainTerm::kHead));
    for (const std::u16string_view character : charactersOf(base.substr(PlainTerm::kHead)))
        pattern.append(u").*?(").append(character);
    return pattern.append(u")").append(extensionPart);
}

SpreadTerm::SpreadTerm(std::u16string_view term) : mTerm(term), mPlain(PlainTerm::make(mTerm)) {}

SpreadTerm::~SpreadTerm() = default;

void SpreadTerm::Close::operator()(URegularExpression* expression) const {
    uregex_close(expression);
}

NameRanges SpreadTerm::rangesIn(std::u16string_view name) {
    const auto plainName = mPlain ? mName.of(name) : std::nullopt;
    if (!plainName)
        return rangesByExpression(name);
    NameRanges ranges;
    return mPlain->findRanges(*plainName, ranges) ? ranges : NameRanges();
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
            appendPiece(ranges, static_cast<std::uint64_t>(start),
                        static_cast<std::uint64_t>(uregex_end(mExpression.get(), group, &status) - start));
    return ranges;
}

} // namespace quoddle

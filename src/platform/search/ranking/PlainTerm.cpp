// SPDX-License-Identifier: MIT
#include "platform/search/ranking/PlainTerm.h"

#include "platform/base/Text.h"
#include "platform/search/ranking/PlainName.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace quoddle {

namespace {

constexpr auto kNone = std::string_view::npos;

/// A vector of 16 bytes. Comparing two gives 0xFF in each byte that matches and 0 in the others.
using Bytes [[gnu::vector_size(16)]] = unsigned char;

/// The place in memory of the first byte that is not zero. At least one must be.
std::size_t firstByte(std::uint64_t bytes) {
    return static_cast<std::size_t>(std::endian::native == std::endian::little ? std::countr_zero(bytes) : std::countl_zero(bytes)) / 8;
}

bool isPlainSign(char16_t unit) {
    return unit >= u' ' && unit < 0x7F && std::u16string_view(u"\\^$.|?*+()[]{}").find(unit) == std::u16string_view::npos;
}

std::string inSmallLetters(std::u16string_view plain) {
    std::string small(plain.size(), ' ');
    std::transform(plain.begin(), plain.end(), small.begin(), [](char16_t unit) { return static_cast<char>(foldedASCII(unit)); });
    return small;
}

} // namespace

std::optional<PlainTerm> PlainTerm::make(std::u16string_view term) {
    const auto [base, extension] = partsOfSpreadTerm(term);
    const auto isPlain = [](std::u16string_view part) { return std::all_of(part.begin(), part.end(), &isPlainSign); };
    if (!isPlain(base) || !isPlain(extension))
        return {};
    return PlainTerm(inSmallLetters(base), extension.empty() ? std::string() : '.' + inSmallLetters(extension));
}

PlainTerm::PlainTerm(std::string base, std::string suffix)
    : mBase(std::move(base)), mSuffix(std::move(suffix)), mLetters(lettersOf(mBase) | lettersOf(mSuffix)) {}

/// The first place at or behind `from` with the first two characters of the term; compares sixteen places at a time.
std::size_t PlainTerm::findHead(std::string_view name, std::size_t from) const {
    static_assert(PlainName::kPadding > sizeof(Bytes));
    for (; from < name.size(); from += sizeof(Bytes)) {
        Bytes here, next;
        std::memcpy(&here, name.data() + from, sizeof here);
        std::memcpy(&next, name.data() + from + 1, sizeof next);
        const auto found = (here == static_cast<unsigned char>(mBase[0])) & (next == static_cast<unsigned char>(mBase[1]));
        std::uint64_t halves[2];
        std::memcpy(halves, &found, sizeof halves);
        if ((halves[0] | halves[1]) != 0)
            return from + (halves[0] ? firstByte(halves[0]) : sizeof halves[0] + firstByte(halves[1]));
    }
    return kNone;
}

bool PlainTerm::findSuffix(std::string_view name, std::size_t from, NameRanges& ranges) const {
    if (mSuffix.empty())
        return true;
    const std::size_t at = name.find(mSuffix, from);
    if (at != kNone)
        appendPiece(ranges, at, mSuffix.size());
    return at != kNone;
}

/// The last place of the whole term that has the suffix somewhere behind it. `at` is the place of the first head.
std::size_t PlainTerm::findWhole(std::string_view name, std::size_t at) const {
    std::size_t end = name.size();
    if (!mSuffix.empty() && (end = name.rfind(mSuffix)) == kNone)
        return kNone;
    std::size_t whole = kNone;
    for (; at != kNone && at + mBase.size() <= end; at = findHead(name, at + 1))
        if (std::equal(mBase.begin(), mBase.end(), name.begin() + static_cast<std::ptrdiff_t>(at)))
            whole = at;
    return whole;
}

bool PlainTerm::findRanges(std::string_view name, NameRanges& ranges) const {
    ranges.clear();
    std::size_t at = mBase.size() < kHead ? name.find(mBase) : findHead(name, 0);
    if (at == kNone)
        return false;
    const std::size_t whole = mBase.size() <= kHead ? at : findWhole(name, at);
    if (whole != kNone) {
        appendPiece(ranges, whole, mBase.size());
        return findSuffix(name, whole + mBase.size(), ranges);
    }
    appendPiece(ranges, at, kHead);
    at += kHead;
    for (const char wanted : std::string_view(mBase).substr(kHead)) {
        at = name.find(wanted, at);
        if (at == kNone)
            return false;
        appendPiece(ranges, at++, 1);
    }
    return findSuffix(name, at, ranges);
}

} // namespace quoddle

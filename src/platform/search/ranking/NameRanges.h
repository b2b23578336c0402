// SPDX-License-Identifier: MIT
// Where the terms of a search occur in a file's name. Several terms are looked for as they stand, in their order, as close together as
// possible; a single term may be spread over the name, its first two characters together.
// All places and lengths count UTF-16 units.
#pragma once

#include "platform/search/ranking/EightUnits.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct URegularExpression;

namespace quoddle {

struct NameRange {
    std::uint64_t location = 0;
    std::uint64_t length = 0;
    bool operator==(const NameRange&) const = default;
};
using NameRanges = std::vector<NameRange>;

/// A term cut at the last dot of its last path component. A term that is a dot and an extension has all of it in `base`.
struct TermParts {
    std::u16string_view base;
    std::u16string_view extension; // without its dot
};
TermParts splitTerm(std::u16string_view term);

/// At least one term, none of them empty; upper and lower case are the same. Nothing when the name is empty or not even the first term that
/// occurs was found in the first attempt.
///
/// Kept on purpose: a term that is missing after one that was found counts as the widest gap there is, one that is found at the very end of
/// the name counts as no gap and ends the attempt, and of equally good attempts the last is taken. The order of hits rests on all three.
std::optional<NameRanges> contiguousRanges(const std::vector<std::u16string>& terms, std::u16string_view name);

/// A single term, ready to be looked for in many names.
///
/// Kept on purpose: signs that mean something in regular expressions keep their meaning, and a term that is no expression is found nowhere.
///
/// Decision: the term is compiled as the expression that it stands for; a term and a name of plain characters are matched without it, with
/// the same outcome. An expression that takes too long for a name finds nothing in it, and after several such names nothing at all.
/// One thread at a time.
class SpreadTerm {
public:
    explicit SpreadTerm(std::u16string_view term);
    ~SpreadTerm();
    SpreadTerm(const SpreadTerm&) = delete;
    SpreadTerm& operator=(const SpreadTerm&) = delete;

    /// Empty when the term does not occur.
    NameRanges rangesIn(std::u16string_view name);
    /// The same without the way for plain terms; for those who compare the two.
    NameRanges rangesByExpression(std::u16string_view name);

    /// The expression: "(re).*?(p).*?(o)" and so on.
    static std::u16string expressionFor(std::u16string_view term);

private:
    /// True: the term is not in the name. False: it may be.
    bool lacksHead(std::u16string_view name) const;
    static bool isPlain(std::u16string_view name);
    NameRanges rangesInPlainName(std::u16string_view name) const;

    struct Close {
        void operator()(URegularExpression* expression) const;
    };
    std::unique_ptr<URegularExpression, Close> mExpression; // made when first needed
    const std::u16string mTerm;
    std::u16string mBase, mSuffix;          // in small letters; the suffix with its dot
    static constexpr std::size_t kHead = 2; // characters at the beginning of the term that stay together
    /// A character of the head eight times, and the bit in which its capital differs, if it is a letter.
    struct {
        EightUnits small{}, caseBit{};
    } mHead[kHead];
    bool mIsPlain = false;
    bool mIsCompiled = false;
    int mTimeouts = 0;
};

} // namespace quoddle

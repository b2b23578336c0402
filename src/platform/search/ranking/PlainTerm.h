// SPDX-License-Identifier: MIT
// A single search term without signs of expressions, looked for in plain names without the expression that it stands for; the outcome is
// the same (see SpreadTerm).
#pragma once

#include "platform/search/ranking/LetterSet.h"
#include "platform/search/ranking/NameRanges.h"

namespace quoddle {

class PlainTerm {
public:
    static constexpr std::size_t kHead = 2; // characters at the beginning of a term that stay together

    /// Nothing for a term that is not plain.
    static std::optional<PlainTerm> make(std::u16string_view term);

    /// Every plain name that has the term has these.
    LetterSet letters() const { return mLetters; }
    /// Puts the places of the term in a name, as PlainName makes it, into `ranges`, whose old content is gone. False when there are none.
    bool findRanges(std::string_view name, NameRanges& ranges) const;

private:
    PlainTerm(std::string base, std::string suffix);
    std::size_t findHead(std::string_view name, std::size_t from) const;
    std::size_t findWhole(std::string_view name, std::size_t at) const;
    bool findSuffix(std::string_view name, std::size_t from, NameRanges& ranges) const;

    std::string mBase, mSuffix; // in small letters; the suffix with its dot
    LetterSet mLetters;
};

} // namespace quoddle

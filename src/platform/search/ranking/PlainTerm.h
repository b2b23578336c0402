// SPDX-License-Identifier: MIT
// A single search term without characters that have a meaning in expressions. Finds it in plain names without the term's expression and
// with the same result (see SpreadTerm).
#pragma once

#include "platform/search/ranking/LetterSet.h"
#include "platform/search/ranking/NameRanges.h"

namespace quoddle {

class PlainTerm {
public:
    static constexpr std::size_t kHead = 2; // the number of first characters of a term that must stay together

    /// nullopt for a term that is not plain.
    static std::optional<PlainTerm> make(std::u16string_view term);

    /// The letters that every plain name with the term has.
    LetterSet letters() const { return mLetters; }
    /// Replaces the contents of `ranges` by the term's places in a name made by PlainName. False when the term does not occur.
    bool findRanges(std::string_view name, NameRanges& ranges) const;

private:
    PlainTerm(std::string base, std::string suffix);
    std::size_t findHead(std::string_view name, std::size_t from) const;
    std::size_t findWhole(std::string_view name, std::size_t at) const;
    bool findSuffix(std::string_view name, std::size_t from, NameRanges& ranges) const;

    std::string mBase, mSuffix; // in lower case; the suffix includes its dot
    LetterSet mLetters;
};

} // namespace quoddle

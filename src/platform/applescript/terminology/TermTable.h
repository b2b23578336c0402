// SPDX-License-Identifier: MIT
// A dictionary that is a sorted table made by the compiler: nothing is read, built or allocated when a program starts.
#pragma once

#include "platform/applescript/terminology/Term.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace quoddle {

constexpr char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

/// Order of terms by their words without regard to case; terms with the same first word stand together.
constexpr bool wordsLess(std::string_view a, std::string_view b) {
    return std::ranges::lexicographical_compare(a, b, {}, asciiLower, asciiLower);
}

/// `first` (lower case) is the first word of `words`.
constexpr bool startsWithWord(std::string_view words, std::string_view first) {
    return words.size() >= first.size() && (words.size() == first.size() || words[first.size()] == ' ') &&
           std::ranges::equal(words.substr(0, first.size()), first, {}, asciiLower);
}

class TermTable final : public TermSource {
public:
    /// Both spans must outlive the table. `terms` is sorted by words, `byCode` comes from indexByCode.
    constexpr TermTable(std::span<const Term> terms, std::span<const std::uint16_t> byCode) : mTerms(terms), mByCode(byCode) {}

    std::span<const Term> terms() const override { return mTerms; }
    std::span<const Term> startingWith(std::string_view word) const override;
    const Term* find(TermKind kind, FourCharCode code, FourCharCode group) const override;

private:
    std::span<const Term> mTerms;
    std::span<const std::uint16_t> mByCode;
};

} // namespace quoddle

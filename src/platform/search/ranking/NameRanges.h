// SPDX-License-Identifier: MIT
// Where the terms of a search occur in a file's name. Several terms are looked for as they stand, in their order, as close together as
// possible; a single term may be spread over the name, its first two characters together.
// All places and lengths count UTF-16 units.
#pragma once

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

/// A piece that goes on where the last one ended belongs to it.
inline void appendPiece(NameRanges& ranges, std::uint64_t location, std::uint64_t length) {
    if (!ranges.empty() && ranges.back().location + ranges.back().length == location)
        ranges.back().length += length;
    else
        ranges.push_back({location, length});
}

/// A term cut at the last dot of its last path component. A term that is a dot and an extension has all of it in `base`.
struct TermParts {
    std::u16string_view base;
    std::u16string_view extension; // without its dot
};
TermParts splitTerm(std::u16string_view term);
/// The parts of a term that may be spread: one that is a dot and an extension has no base.
TermParts partsOfSpreadTerm(std::u16string_view term);

/// At least one term, none of them empty; upper and lower case are the same. Nothing when the name is empty or not even the first term that
/// occurs was found in the first attempt.
///
/// Kept on purpose: a term that is missing after one that was found counts as the widest gap there is, one that is found at the very end of
/// the name counts as no gap and ends the attempt, and of equally good attempts the last is taken. The order of hits rests on all three.
std::optional<NameRanges> contiguousRanges(const std::vector<std::u16string>& terms, std::u16string_view name);

} // namespace quoddle

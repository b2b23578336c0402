// SPDX-License-Identifier: MIT
// The places where the terms of a search occur in a file's name. Several terms must occur literally, in order, and as close together as
// possible; a single term may be spread over the name except for its first two characters. Places and lengths count UTF-16 units.
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

/// Adds a piece; one that directly follows the last piece is joined with it.
inline void appendPiece(NameRanges& ranges, std::uint64_t location, std::uint64_t length) {
    if (!ranges.empty() && ranges.back().location + ranges.back().length == location)
        ranges.back().length += length;
    else
        ranges.push_back({location, length});
}

/// A term split at the last dot of its last path component. A term that is only a dot and an extension stays whole in `base`.
struct TermParts {
    std::u16string_view base;
    std::u16string_view extension; // without its dot
};
TermParts splitTerm(std::u16string_view term);
/// The parts of a term that may be spread. A term that is only a dot and an extension has an empty base.
TermParts partsOfSpreadTerm(std::u16string_view term);

/// `terms` has at least one term and no empty one; case is ignored. nullopt when the name is empty or none of the terms occurs in it.
///
/// QUIRK: a term that is missing behind one that was found counts as the widest gap, a term that is found at the very end of the name
/// counts as no gap and ends the attempt, and of equally good attempts the last is taken; the order of hits relies on all three.
std::optional<NameRanges> contiguousRanges(const std::vector<std::u16string>& terms, std::u16string_view name);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// How good a hit of a file search is, from where the terms occur in the name.
#pragma once

#include "platform/search/ranking/NameRanges.h"

namespace quoddle {

/// The numbers of a search's terms that the score depends on.
struct TermCounts {
    std::size_t count = 0;
    std::size_t longest = 0; // UTF-16 units
};

/// Whether a hit is kept: all of several terms were found, or a single one in few enough pieces. Four pieces or more need more than four
/// characters of the term each.
bool isUsableMatch(const NameRanges& ranges, TermCounts terms);

/// Higher is better: more of the name covered, longer pieces, fewer of them, smaller gaps. `nameLength`: of the last component of the path.
/// Divisions by zero follow the rules of floating point, so the answer may be infinite or no number.
/// Kept on purpose: a gap counts as unsigned, so a piece that begins before the last one ended makes it huge.
double matchRelevance(const NameRanges& ranges, TermCounts terms, std::size_t nameLength);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The score of a hit of a file search, from the places of the terms in the name.
#pragma once

#include "platform/search/ranking/NameRanges.h"

namespace quoddle {

/// The properties of a search's terms on which the score depends.
struct TermCounts {
    std::size_t count = 0;
    std::size_t longest = 0; // in UTF-16 units
};

/// Whether a hit is kept. Several terms must all have been found. A single term may be in one piece, in two or three if it has more
/// characters than pieces, and in more pieces if it has more than four characters for each.
bool isUsableMatch(const NameRanges& ranges, TermCounts terms);

/// The higher, the better: when more of the name is covered, by longer and fewer pieces with smaller gaps. `nameLength` is that of the
/// path's last component. Divisions by zero follow the rules of floating point, so the result may be infinite or NaN.
/// QUIRK: gaps are unsigned, so a piece that begins before the last one ends makes a huge gap; the order of hits relies on it.
double matchRelevance(const NameRanges& ranges, TermCounts terms, std::size_t nameLength);

} // namespace quoddle

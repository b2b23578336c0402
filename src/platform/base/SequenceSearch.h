// SPDX-License-Identifier: MIT
// Finds a sequence in another one. The number of comparisons is at most a few times the sequences' length.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quoddle {

constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

/// The default for `accept`: accepts every place.
struct Anywhere {
    bool operator()(std::size_t) const { return true; }
};

/// The algorithm of Knuth, Morris and Pratt: it never goes back in `whole`, but has to prepare a table for all of `part` first.
template<class Sequence, class Equal, class Accept = Anywhere>
std::size_t findSequenceSteadily(const Sequence& whole, const Sequence& part, std::size_t start, Equal equal, Accept accept = {}) {
    // border[n]: the longest proper beginning of part's first n elements that is also their end
    std::vector<std::uint32_t> border(part.size() + 1, 0);
    for (std::size_t i = 1, matched = 0; i < part.size(); ++i) {
        while (matched > 0 && !equal(part[i], part[matched]))
            matched = border[matched];
        matched += equal(part[i], part[matched]) ? 1 : 0;
        border[i + 1] = static_cast<std::uint32_t>(matched);
    }
    for (std::size_t at = start, matched = 0; at < whole.size(); ++at) {
        while (matched > 0 && !equal(whole[at], part[matched]))
            matched = border[matched];
        matched += equal(whole[at], part[matched]) ? 1 : 0;
        if (matched == part.size()) {
            if (accept(at + 1 - matched))
                return at + 1 - matched;
            matched = border[matched];
        }
    }
    return kNotFound;
}

/// The first place at or behind `start` where `part` occurs in `whole` and that `accept` accepts; kNotFound when there is none. `equal` is
/// an equivalence.
template<class Sequence, class Equal, class Accept = Anywhere>
std::size_t findSequence(const Sequence& whole, const Sequence& part, std::size_t start, Equal equal, Accept accept = {}) {
    if (part.empty())
        return start <= whole.size() ? start : kNotFound;
    std::size_t wasted = 0;
    for (std::size_t at = start; at + part.size() <= whole.size(); ++at) {
        if (!equal(whole[at], part[0]))
            continue;
        std::size_t i = 1;
        while (i < part.size() && equal(whole[at + i], part[i]))
            ++i;
        if (i == part.size() && accept(at))
            return at;
        wasted += i;
        if (wasted > 4 * (at - start) + 4096) // the sequences are alike nearly everywhere, so the simple search would take quadratic time
            return findSequenceSteadily(whole, part, at + 1, equal, accept);
    }
    return kNotFound;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Finds a sequence in another one, with a number of comparisons that is at most a few times their length.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quoddle {

constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

/// Accepts every place.
struct Anywhere {
    bool operator()(std::size_t) const { return true; }
};

/// Never looks at an element of `whole` again, as Knuth, Morris and Pratt have it, but has to look at all of `part` first.
template<class Sequence, class Equal, class Accept = Anywhere>
std::size_t findSequenceSteadily(const Sequence& whole, const Sequence& part, std::size_t start, Equal equal, Accept accept = {}) {
    std::vector<std::uint32_t> border(part.size() + 1, 0); // of so many that have matched, how many are also the beginning
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

/// Where `part` first stands in `whole` at or behind `start`, at a place that `accept` is true of. `equal` is an equivalence.
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
        if (wasted > 4 * (at - start) + 4096) // sequences that are alike nearly everywhere
            return findSequenceSteadily(whole, part, at + 1, equal, accept);
    }
    return kNotFound;
}

} // namespace quoddle

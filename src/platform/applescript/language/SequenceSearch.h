// SPDX-License-Identifier: MIT
// Finds a sequence in another one, with a number of comparisons that is at most a few times their length.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quoddle::language {

constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

/// Never looks at an element of `whole` again, as Knuth, Morris and Pratt have it, but has to look at all of `part` first.
template<class Sequence, class Equal>
std::size_t findSequenceSteadily(const Sequence& whole, const Sequence& part, std::size_t start, Equal equal) {
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
        if (matched == part.size())
            return at + 1 - matched;
    }
    return kNotFound;
}

/// Where `part` first stands in `whole` at or behind `start`. `equal` is an equivalence.
template<class Sequence, class Equal>
std::size_t findSequence(const Sequence& whole, const Sequence& part, std::size_t start, Equal equal) {
    if (part.empty())
        return start <= whole.size() ? start : kNotFound;
    std::size_t wasted = 0;
    for (std::size_t at = start; at + part.size() <= whole.size(); ++at) {
        if (!equal(whole[at], part[0]))
            continue;
        std::size_t i = 1;
        while (i < part.size() && equal(whole[at + i], part[i]))
            ++i;
        if (i == part.size())
            return at;
        wasted += i;
        if (wasted > 4 * (at - start) + 4096) // sequences that are alike nearly everywhere
            return findSequenceSteadily(whole, part, at + 1, equal);
    }
    return kNotFound;
}

} // namespace quoddle::language

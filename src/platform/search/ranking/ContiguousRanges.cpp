// SPDX-License-Identifier: MIT
#include "platform/search/ranking/NameRanges.h"

#include "platform/base/Considering.h"
#include "platform/base/TextSearch.h"

#include <algorithm>

namespace quoddle {

namespace {

constexpr std::uint64_t kNowhere = std::numeric_limits<std::int64_t>::max();
constexpr std::uint64_t kWidest = std::numeric_limits<std::uint64_t>::max();

struct Attempt {
    NameRanges ranges;
    std::uint64_t minGap = kWidest;
    std::uint64_t maxGap = 0;
};

/// Looks for the terms in order, each behind the one before, from `start` on.
Attempt attemptFrom(std::uint64_t start, const std::vector<std::u16string>& terms, std::u16string_view name, TextSearch& search) {
    Attempt attempt;
    NameRange previous{kNowhere, 0};
    for (const std::u16string& term : terms) {
        std::size_t length = 0;
        const std::size_t found = search.find(term, start, length);
        const bool isFound = found != kNotFound;
        const NameRange range = isFound ? NameRange{found, length} : NameRange{kNowhere, 0};
        if (isFound) {
            attempt.ranges.push_back(range);
            start = range.location + range.length;
            if (start >= name.size())
                break;
        }
        if (previous.location != kNowhere) {
            const std::uint64_t gap = range.location - (previous.location + previous.length);
            attempt.maxGap = std::max(attempt.maxGap, gap);
            attempt.minGap = std::min(attempt.minGap, gap);
        }
        previous = range;
    }
    return attempt;
}

bool isBetter(const Attempt& attempt, const Attempt& best) {
    return attempt.ranges.size() >= best.ranges.size() && attempt.minGap <= best.minGap && attempt.maxGap <= best.maxGap;
}

} // namespace

std::optional<NameRanges> contiguousRanges(const std::vector<std::u16string>& terms, std::u16string_view name) {
    if (name.empty())
        return std::nullopt;
    TextSearch search(name, kDefaultConsiderations);
    Attempt best;
    for (std::uint64_t start = 0;;) {
        Attempt attempt = attemptFrom(start, terms, name, search);
        const bool isComplete = attempt.ranges.size() == terms.size();
        const std::uint64_t next = attempt.ranges.empty() ? name.size() : attempt.ranges.front().location + attempt.ranges.front().length;
        if (best.ranges.empty() || (!attempt.ranges.empty() && isBetter(attempt, best)))
            best = std::move(attempt);
        if (!isComplete || next >= name.size())
            break;
        start = next;
    }
    if (best.ranges.empty())
        return std::nullopt;
    return std::move(best.ranges);
}

} // namespace quoddle

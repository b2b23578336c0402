// SPDX-License-Identifier: MIT
// The order of hits: by relevance, the highest first, then by name, unit by unit.
//
// Decision: hits are sorted by numbers, into which first the relevance and then the next units of the name are packed; names are read only
// as far as hits are equal.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>
#include <vector>

namespace quoddle {

/// A number that is smaller for a higher relevance. NaN comes last.
inline std::uint64_t rankNumber(double relevance) {
    constexpr std::uint64_t kSign = std::uint64_t(1) << 63;
    if (std::isnan(relevance))
        return std::numeric_limits<std::uint64_t>::max();
    const auto bits = std::bit_cast<std::uint64_t>(relevance + 0.0); // turns -0 into +0
    return bits & kSign ? bits : ~(bits | kSign);
}

/// A hit to be sorted.
template<class Unit>
class Ranked {
public:
    using Name = std::basic_string_view<Unit>;

    Ranked() = default;
    /// `name` must outlive the object. `hit` is a number of the caller's choice.
    Ranked(double relevance, Name name, std::uint32_t hit)
        : rank(rankNumber(relevance)), number(hit), mLength(static_cast<std::uint32_t>(name.size())), mName(name.data()) {}
    Name name() const { return {mName, mLength}; }

    std::uint64_t rank = 0; // replaced by other numbers during sorting
    std::uint32_t number = 0;

private:
    std::uint32_t mLength = 0;
    const Unit* mName = nullptr;
};

/// Whether one hit comes before another in the order that RankSort makes.
template<class Unit>
bool comesBefore(const Ranked<Unit>& a, const Ranked<Unit>& b) {
    if (a.rank != b.rank)
        return a.rank < b.rank;
    const auto order = a.name() <=> b.name();
    return order != 0 ? order < 0 : a.number < b.number;
}

/// Sorts hits. Hits of the same relevance and name are sorted by their numbers, which must be in ascending order before.
template<class Unit>
class RankSort {
public:
    using Hits = std::span<Ranked<Unit>>;

    explicit RankSort(Hits hits) : mSpare(hits.size()) {
        sortByNumber(hits);
        forEachRun(hits, [this](Hits run) { sortByName(run, 0); });
    }

private:
    static constexpr std::size_t kFew = 24; // so few hits are sorted by comparing them
    static constexpr int kDigitBits = 8;
    static constexpr std::size_t kUnits = sizeof(std::uint64_t) / sizeof(Unit);

    /// Calls for each run of two or more hits with the same number; the hits must be in the order of their numbers.
    template<class Call>
    static void forEachRun(Hits hits, Call call) {
        for (std::size_t begin = 0, end; begin < hits.size(); begin = end) {
            for (end = begin + 1; end < hits.size() && hits[end].rank == hits[begin].rank;)
                ++end;
            if (end - begin > 1)
                call(hits.subspan(begin, end - begin));
        }
    }

    /// Sorts hits whose names are the same in the first `place` units.
    void sortByName(Hits hits, std::size_t place) {
        if (hits.size() <= kFew) {
            std::sort(hits.begin(), hits.end(), &comesBefore<Unit>); // compares the names only, because the ranks are equal
            return;
        }
        bool isMore = false;
        for (std::size_t i = 0; i < hits.size(); ++i) {
            __builtin_prefetch(hits[std::min(i + kFew, hits.size() - 1)].name().data() + place);
            hits[i].rank = packedUnits(hits[i].name(), place);
            isMore = isMore || hits[i].name().size() > place;
        }
        if (!isMore)
            return;
        sortByNumber(hits);
        forEachRun(hits, [this, place](Hits run) { sortByName(run, place + kUnits); });
    }

    /// Packs the units of the name from `place` on into a number, with zeros behind the end. The numbers have the same order as the units.
    static std::uint64_t packedUnits(std::basic_string_view<Unit> name, std::size_t place) {
        std::uint64_t packed = 0;
        for (std::size_t i = place; i < place + kUnits; ++i)
            packed = packed << sizeof(Unit) * 8 | (i < name.size() ? static_cast<std::make_unsigned_t<Unit>>(name[i]) : 0u);
        return packed;
    }

    /// A radix sort, from the highest digit in which the numbers differ.
    void sortByNumber(Hits hits) {
        if (hits.size() <= kFew) {
            std::sort(hits.begin(), hits.end(),
                      [](const auto& a, const auto& b) { return a.rank != b.rank ? a.rank < b.rank : a.number < b.number; });
            return;
        }
        std::uint64_t differing = 0;
        for (const auto& hit : hits)
            differing |= hit.rank ^ hits.front().rank;
        if (differing == 0)
            return;
        const int shift = std::max(static_cast<int>(std::bit_width(differing)) - kDigitBits, 0);
        const auto digitOf = [shift](const auto& hit) { return hit.rank >> shift & ((1 << kDigitBits) - 1); };
        // first the number of hits with a smaller digit, then the end of each digit's hits
        std::array<std::uint32_t, (1 << kDigitBits) + 1> ends{};
        for (const auto& hit : hits)
            ++ends[digitOf(hit) + 1];
        for (std::size_t digit = 1; digit < ends.size(); ++digit)
            ends[digit] += ends[digit - 1];
        for (const auto& hit : hits)
            mSpare[ends[digitOf(hit)]++] = hit;
        std::copy_n(mSpare.begin(), hits.size(), hits.begin());
        for (std::size_t digit = 0, begin = 0; digit + 1 < ends.size(); begin = ends[digit++])
            if (ends[digit] - begin > 1 && shift > 0)
                sortByNumber(hits.subspan(begin, ends[digit] - begin));
    }

    std::vector<Ranked<Unit>> mSpare;
};

} // namespace quoddle

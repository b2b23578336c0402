// SPDX-License-Identifier: MIT
// When and how many results are told at a time: at once, then at intervals, and never so many that the main thread is held for long.
//
// Decision: how long a result takes is what the last notification took for each of its results. What a notification costs however small it
// is grows with the results that are known, so that it brings at least a part of their number: else the time for all would grow with its
// square. Time is a parameter: seconds of any clock.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>

namespace quoddle {

class ResultBatches {
public:
    explicit ResultBatches(double interval) : mInterval(interval) {}

    /// Seconds until something may be told, 0 for now. `isUrgent`: what waits does not have to wait for the interval.
    double delay(double now, bool isUrgent) const { return isUrgent || mLeft > 0 ? 0 : std::max(0.0, mToldAt + mInterval - now); }
    /// How many of so many that wait are to be told now; `known`: results that have been told before.
    std::size_t beginSlice(std::size_t waiting, std::size_t known) {
        if (mLeft == 0)
            mLeft = waiting;
        return std::min({mLeft, std::max(mSize, known / kLeastPart), waiting});
    }
    void endSlice(std::size_t count, double now, double seconds) {
        mLeft -= std::min(mLeft, count);
        mToldAt = now;
        const double each = std::max(seconds / static_cast<double>(std::max<std::size_t>(count, 1)), 1e-7);
        const std::size_t affordable = static_cast<std::size_t>(kMostSeconds / each);
        mSize = std::clamp<std::size_t>(affordable, 1, std::min(mSize * kGrowth, kMost));
    }

private:
    static constexpr double kMostSeconds = 0.006; // of 8 ms: the next results may take longer than the last
    static constexpr std::size_t kGrowth = 4, kMost = 10'000, kLeastPart = 32;

    double mInterval;
    std::size_t mSize = 8, mLeft = 0;                          // of what is due
    double mToldAt = -std::numeric_limits<double>::infinity(); // nothing has been told yet
};

} // namespace quoddle

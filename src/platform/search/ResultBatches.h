// SPDX-License-Identifier: MIT
// Decides when and how many results are notified at a time: some at once, more at intervals, and never so many that the main thread is
// blocked for long.
//
// Decision: the time per result is estimated from the last notification. The fixed cost of a notification grows with the number of known
// results, so each brings at least a fraction of that number; otherwise the time for all would grow with its square. Times are parameters,
// in seconds of any clock.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>

namespace quoddle {

class ResultBatches {
public:
    explicit ResultBatches(double interval) : mInterval(interval) {}

    /// Seconds until results may be notified, 0 for now. `isUrgent` results do not wait for the interval.
    double delay(double now, bool isUrgent) const { return isUrgent || mLeft > 0 ? 0 : std::max(0.0, mToldAt + mInterval - now); }
    /// How many of the waiting results to notify now. `known` is the number of results that have been notified.
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
    static constexpr double kMostSeconds = 0.006; // a margin below 8 ms, because the next results may take longer than the last
    static constexpr std::size_t kGrowth = 4, kMost = 10'000, kLeastPart = 32;

    double mInterval;
    std::size_t mSize = 8, mLeft = 0;                          // results per notification, and results of this interval that are still left
    double mToldAt = -std::numeric_limits<double>::infinity(); // nothing has been notified yet
};

} // namespace quoddle

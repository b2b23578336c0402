// SPDX-License-Identifier: MIT
#include "platform/search/ranking/NameScore.h"

#include <algorithm>

namespace quoddle {

bool isUsableMatch(const NameRanges& ranges, TermCounts terms) {
    constexpr std::size_t kManyPieces = 4;
    constexpr double kMostPiecesPercent = 25;
    if (terms.count != 1)
        return ranges.size() == terms.count;
    if (ranges.size() <= 1)
        return ranges.size() == 1;
    const double piecesPercent = static_cast<double>(ranges.size()) / static_cast<double>(terms.longest) * 100;
    return terms.longest > ranges.size() && (ranges.size() < kManyPieces || piecesPercent < kMostPiecesPercent);
}

double matchRelevance(const NameRanges& ranges, TermCounts terms, std::size_t nameLength) {
    constexpr double kNoGap = std::numeric_limits<double>::max();
    double sum = 0, longestRange = 0, minGap = kNoGap, maxGap = 0;
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        if (i > 0) {
            const std::uint64_t previousEnd = ranges[i - 1].location + ranges[i - 1].length;
            const auto gap = static_cast<double>(ranges[i].location - previousEnd);
            minGap = std::min(minGap, gap);
            maxGap = std::max(maxGap, gap);
        }
        sum += static_cast<double>(ranges[i].length);
        longestRange = std::max(longestRange, static_cast<double>(ranges[i].length));
    }
    const double coverage = longestRange / static_cast<double>(terms.longest);
    const double spread = static_cast<double>(terms.count) / static_cast<double>(ranges.size()) * coverage;
    const double base = sum / static_cast<double>(nameLength) * spread;
    double minFactor = 1;
    if (minGap < kNoGap)
        minFactor = minGap > 0 ? 1 / minGap : 1;
    else if (ranges.size() < terms.count)
        minFactor = std::numeric_limits<double>::min(); // below all other hits, but above 0
    const double maxFactor = maxGap > 0 ? 1 / maxGap : 1;
    return base * maxFactor * minFactor;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
// A set of a handler's locals. Long code takes thousands of intersections of such sets, so a word holds 64 of them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace quoddle::machine {

class LocalSet {
public:
    LocalSet() = default;
    /// A set of all `count` locals, or of none.
    LocalSet(std::size_t count, bool all) : mWords((count + 63) / 64, all ? ~std::uint64_t(0) : 0) {}

    bool contains(std::size_t local) const { return mWords[local / 64] >> local % 64 & 1; }
    void put(std::size_t local, bool isIn) {
        const std::uint64_t bit = std::uint64_t(1) << local % 64;
        mWords[local / 64] = isIn ? mWords[local / 64] | bit : mWords[local / 64] & ~bit;
    }
    void clear() { std::ranges::fill(mWords, 0); }
    /// Keeps what the other one has as well. Both are sets of the same handler's locals.
    void intersect(const LocalSet& other) {
        for (std::size_t i = 0; i < mWords.size(); ++i)
            mWords[i] &= other.mWords[i];
    }

private:
    std::vector<std::uint64_t> mWords;
};

} // namespace quoddle::machine

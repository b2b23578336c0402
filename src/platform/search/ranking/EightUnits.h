// SPDX-License-Identifier: MIT
// Eight UTF-16 units that are worked on together, for those who look at a million names.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quoddle {

/// A comparison of two gives all bits of a unit, or none.
using EightUnits [[gnu::vector_size(16)]] = std::uint16_t;
constexpr std::size_t kEight = 8;

inline EightUnits eightUnitsAt(const char16_t* units) {
    EightUnits eight;
    std::memcpy(&eight, units, sizeof eight);
    return eight;
}

inline bool isAnySet(EightUnits eight) {
    std::uint64_t halves[2];
    std::memcpy(halves, &eight, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

/// Calls with the place of each eight units of a text that has so many, the last ones twice where it does not come out even.
template<class Call>
void forEachEight(std::u16string_view text, Call call) {
    for (std::size_t at = 0, last = text.size() - kEight;; at = std::min(at + kEight, last)) {
        call(at);
        if (at == last)
            return;
    }
}

} // namespace quoddle

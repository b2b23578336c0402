// SPDX-License-Identifier: MIT
// A range of a source text in UTF-16 units.
#pragma once

#include <cstdint>
#include <limits>

namespace quoddle {

/// The largest signed 64-bit value, as on the platform.
constexpr std::uint64_t kQXNotFound = std::numeric_limits<std::int64_t>::max();

struct QXRange {
    std::uint64_t location = 0;
    std::uint64_t length = 0;
    bool operator==(const QXRange&) const = default;
};

} // namespace quoddle

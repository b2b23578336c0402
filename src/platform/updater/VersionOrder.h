// SPDX-License-Identifier: MIT
// Which of two versions is the newer one, for version texts as people write them: "1.10", "2.0b3", "4.1-rc.2", "7".
#pragma once

#include <compare>

#include <QStringView>

namespace quoddle {

/// Numbers count as numbers of any length, words by their letters without regard to case. A word marks what comes before the release:
/// 2.0b1 < 2.0 < 2.0.1. Missing numbers are zero: 1.0 is 1.0.0. A "v" in
/// front and what follows a "+", which names a build, do not count.
std::weak_ordering versionOrder(QStringView one, QStringView other);

} // namespace quoddle

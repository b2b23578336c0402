// SPDX-License-Identifier: MIT
// The order of versions in the forms that people write: "1.10", "2.0b3", "4.1-rc.2", "7".
#pragma once

#include <compare>

#include <QStringView>

namespace quoddle {

/// Compares numbers as numbers of any length, words without regard to case. A word marks a version before the release: 2.0b1 < 2.0 < 2.0.1.
/// Missing numbers are zero: 1.0 is 1.0.0. A "v" in front and everything behind a "+", which names a build, are ignored.
std::weak_ordering versionOrder(QStringView one, QStringView other);

} // namespace quoddle

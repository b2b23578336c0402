// SPDX-License-Identifier: MIT
// The session bus, for those who can do without. It never starts one.
#pragma once

#include <optional>

#include <QDBusConnection>

namespace quoddle {

/// Nothing where no bus runs. The first call connects, which takes a round trip: not before the first window is there.
std::optional<QDBusConnection> runningSessionBus();

} // namespace quoddle

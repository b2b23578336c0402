// SPDX-License-Identifier: MIT
// The session bus, for code that can do without one. Never starts a bus.
#pragma once

#include <optional>

#include <QDBusConnection>

namespace quoddle {

/// The connection; nullopt where no bus runs. The first call connects, which takes a round trip, so this is not called before the first
/// window is there.
std::optional<QDBusConnection> runningSessionBus();

} // namespace quoddle

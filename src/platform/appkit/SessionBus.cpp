// SPDX-License-Identifier: MIT
#include "platform/appkit/SessionBus.h"

#include <QFileInfo>

namespace quoddle {

using namespace Qt::StringLiterals;

std::optional<QDBusConnection> runningSessionBus() {
    // The library would try to launch a bus where there is none.
    if (!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") && !QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus"_s))
        return std::nullopt;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
// How a notification tells from whom it comes: the applet's icon, and the launcher that the desktop knows it by.
#pragma once

#include <QString>
#include <QVariantMap>

namespace quoddle {

/// Arguments and hints of the method Notify, from the Desktop Notifications Specification 1.2. Main thread only.
struct NotificationSender {
    QString iconName;  ///< of the icon theme; empty when the hints bring a picture
    QVariantMap hints; ///< "image-data" and, for an installed applet, "desktop-entry"
};

/// An applet is shown by its own icon; a script without one, which has no icon, by that of a message.
NotificationSender notificationSender();

} // namespace quoddle

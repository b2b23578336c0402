// SPDX-License-Identifier: MIT
// The button that a notification has when it is all that is to be seen of an application: to quit it. Main thread only.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QSet>
#include <QStringList>

namespace quoddle {

class NotificationActions : public QObject {
    Q_OBJECT
public:
    static NotificationActions& shared();

    /// As the service takes them; none for an application that has a window, or that nobody could ask to quit.
    static QStringList actionsNow();
    /// The notification, numbered by the service, was shown with actions.
    void watch(const QDBusConnection& bus, uint number);

private Q_SLOTS:
    void actionInvoked(uint number, const QString& action);
    void closed(uint number) { mNumbers.remove(number); }

private:
    using QObject::QObject;
    QSet<uint> mNumbers;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The button "Quit" of a notification when nothing else is to be seen of the application. Main thread only.
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

    /// The actions in the form that the service takes. None for an application that has a window, or that cannot be asked to quit.
    static QStringList actionsNow();
    /// Listens to the actions of a notification, which has this number with the service.
    void watch(const QDBusConnection& bus, uint number);

private Q_SLOTS:
    void actionInvoked(uint number, const QString& action);
    void closed(uint number) { mNumbers.remove(number); }

private:
    using QObject::QObject;
    QSet<uint> mNumbers;
};

} // namespace quoddle

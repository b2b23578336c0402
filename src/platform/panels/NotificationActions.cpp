// SPDX-License-Identifier: MIT
#include "platform/panels/NotificationActions.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSWindow.h"
#include "platform/foundation/NSBundle.h"

#include <QPointer>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {
const QString kQuit = u"quit"_s;
const QString kService = u"org.freedesktop.Notifications"_s;
const QString kObject = u"/org/freedesktop/Notifications"_s;
} // namespace

NotificationActions& NotificationActions::shared() {
    static QPointer<NotificationActions> sShared;
    if (!sShared)
        sShared = new NotificationActions(QCoreApplication::instance());
    return *sShared;
}

QStringList NotificationActions::actionsNow() {
    const NSApplication* application = NSApplication::sharedApplication();
    const QWidgetList windows = QApplication::topLevelWidgets();
    const bool hasWindow = std::any_of(windows.begin(), windows.end(), [](const QWidget* widget) { return widget->isVisible(); });
    if (!application || !application->delegate() || hasWindow)
        return {};
    return {kQuit, NSBundle::mainBundle()->localizedString(u"QuitButton"_s)};
}

void NotificationActions::watch(const QDBusConnection& bus, uint number) {
    QDBusConnection connection = bus;
    if (mNumbers.isEmpty()) { // the toolkit would connect the slot a second time, and the user would be asked to quit twice
        connection.disconnect(kService, kObject, kService, u"ActionInvoked"_s, this, SLOT(actionInvoked(uint, QString)));
        connection.connect(kService, kObject, kService, u"ActionInvoked"_s, this, SLOT(actionInvoked(uint, QString)));
        connection.disconnect(kService, kObject, kService, u"NotificationClosed"_s, this, SLOT(closed(uint)));
        connection.connect(kService, kObject, kService, u"NotificationClosed"_s, this, SLOT(closed(uint)));
    }
    mNumbers.insert(number);
}

void NotificationActions::actionInvoked(uint number, const QString& action) {
    if (mNumbers.contains(number) && action == kQuit)
        NSApplication::sharedApplication()->terminate();
}

} // namespace quoddle

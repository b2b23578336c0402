// SPDX-License-Identifier: MIT
#include "window/AppletPanels.h"

#include "platform/appkit/NSAlert.h"
#include "platform/appkit/NSOpenPanel.h"
#include "runtime/AppDelegate.h"
#include "window/AppletIconView.h"

#include <QCoreApplication>

namespace quoddle {

using namespace Qt::StringLiterals;

void showAboutPanel() {
    static std::unique_ptr<NSAlert> panel; // the only one; destroyed when it is dismissed
    if (panel) {
        panel->window().raise();
        panel->window().activateWindow();
        return;
    }
    const auto bundle = AppDelegate::instance()->mainBundle();
    const QVariantMap info = bundle->infoDictionary();
    QStringList lines;
    if (const QString version = info.value(u"CFBundleShortVersionString"_s).toString(); !version.isEmpty())
        lines << QCoreApplication::translate("AppletPanels", "Version %1").arg(version);
    if (const QString copyright = info.value(u"NSHumanReadableCopyright"_s).toString(); !copyright.isEmpty())
        lines << copyright;
    panel = std::make_unique<NSAlert>();
    // A window must not outlive the application.
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, &panel->window(), [] { panel.reset(); });
    panel->setIcon(appletIcon());
    panel->setMessageText(bundle->name());
    panel->setInformativeText(lines.join(u'\n'));
    panel->show([] {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [] { panel.reset(); }, Qt::QueuedConnection);
    });
}

QString chooseTestApplet() {
    NSOpenPanel panel;
    panel.setAllowedFileTypes({u"app"_s});
    panel.setAllowsMultipleSelection(false);
    panel.setCanChooseDirectories(false);
    panel.setPrompt(QCoreApplication::translate("AppletPanels", "Choose the Kestrel Applet to test"));
    return panel.runModal() == NSModalResponseOK ? panel.url().toLocalFile() : QString();
}

} // namespace quoddle

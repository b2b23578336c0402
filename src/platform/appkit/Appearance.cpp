// SPDX-License-Identifier: MIT
#include "platform/appkit/Appearance.h"

#include "platform/appkit/SessionBus.h"
#include "platform/foundation/NSUserDefaults.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QPalette>
#include <QStyle>

namespace quoddle::Appearance {

using namespace Qt::StringLiterals;

namespace {

constexpr auto kService = "org.freedesktop.portal.Desktop"_L1;
constexpr auto kPath = "/org/freedesktop/portal/desktop"_L1;
constexpr auto kInterface = "org.freedesktop.portal.Settings"_L1;
constexpr auto kNamespace = "org.freedesktop.appearance"_L1;
constexpr auto kKey = "color-scheme"_L1;
constexpr auto kRemembered = "Appearance/Dark"_L1;

bool ourPaletteInstalled = false;

QColor mixed(const QColor& a, const QColor& b, double share) {
    auto channel = [share](float x, float y) { return static_cast<float>(x * share + y * (1 - share)); };
    return QColor::fromRgbF(channel(a.redF(), b.redF()), channel(a.greenF(), b.greenF()), channel(a.blueF(), b.blueF()));
}

QPalette darkPalette() {
    QPalette palette(QColor(0x2b, 0x2b, 0x2e));
    const QColor text(0xee, 0xee, 0xf0);
    const QColor faint(0x8c, 0x8c, 0x92);
    palette.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x2e));
    palette.setColor(QPalette::Base, QColor(0x1f, 0x1f, 0x22));
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x26, 0x29));
    palette.setColor(QPalette::Button, QColor(0x3c, 0x3c, 0x40));
    palette.setColor(QPalette::ToolTipBase, QColor(0x3c, 0x3c, 0x40));
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText, QPalette::BrightText})
        palette.setColor(role, text);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x8b, 0xe6));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb0, 0xff));
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x5a, 0x5a, 0x60));
    return palette;
}

/// Whether a value of the portal asks for dark: 0 is no wish, 1 dark, 2 light. The portal's old call wraps the number in two variants.
bool meansDark(QVariant value) {
    for (int depth = 0; depth < 2 && value.canConvert<QDBusVariant>(); ++depth)
        value = value.value<QDBusVariant>().variant();
    return value.toUInt() == 1;
}

void rememberAndApply(bool dark) {
    standardUserDefaults().setValue(kRemembered, dark);
    setWantsDark(dark);
}

/// Follows the changes that the portal announces.
class Follower final : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
public Q_SLOTS:
    void settingChanged(const QString& space, const QString& key, const QDBusVariant& value) {
        if (space == kNamespace && key == kKey)
            rememberAndApply(meansDark(value.variant()));
    }
};

} // namespace

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::WindowText).lightnessF() > palette.color(QPalette::Window).lightnessF();
}

QColor secondaryLabelColor(const QPalette& palette) {
    return mixed(palette.color(QPalette::WindowText), palette.color(QPalette::Window), 0.66);
}

QColor grooveColor(const QPalette& palette) {
    return mixed(palette.color(QPalette::WindowText), palette.color(QPalette::Window), isDark(palette) ? 0.18 : 0.14);
}

void setWantsDark(bool dark) {
    if (dark == ourPaletteInstalled || (dark && isDark(QApplication::palette())))
        return;
    ourPaletteInstalled = dark;
    QApplication::setPalette(dark ? darkPalette() : QPalette());
}

void applyRememberedScheme() {
    const QString forced = qEnvironmentVariable("QUODDLE_APPEARANCE");
    setWantsDark(forced.isEmpty() ? standardUserDefaults().value(kRemembered).toBool() : forced == "dark"_L1);
}

void followDesktop() {
    if (qEnvironmentVariableIsSet("QUODDLE_APPEARANCE"))
        return;
    auto bus = runningSessionBus();
    if (!bus)
        return;
    auto* follower = new Follower(qApp);
    bus->connect(kService, kPath, kInterface, u"SettingChanged"_s, follower, SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage question = QDBusMessage::createMethodCall(kService, kPath, kInterface, u"Read"_s);
    question << QString(kNamespace) << QString(kKey);
    auto* watcher = new QDBusPendingCallWatcher(bus->asyncCall(question, 3000), follower);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, follower, [watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            rememberAndApply(meansDark(QVariant::fromValue(reply.value())));
    });
}

} // namespace quoddle::Appearance

#include "Appearance.moc"

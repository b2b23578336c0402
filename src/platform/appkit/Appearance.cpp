// SPDX-License-Identifier: MIT
#include "platform/appkit/Appearance.h"

#include "platform/appkit/SessionBus.h"
#include "platform/foundation/NSUserDefaults.h"

#include <QApplication>
#include <QDBusArgument>
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
constexpr auto kScheme = "color-scheme"_L1;
constexpr auto kAccent = "accent-color"_L1;
constexpr auto kRememberedDark = "Appearance/Dark"_L1;
constexpr auto kRememberedAccent = "Appearance/Accent"_L1;
constexpr int kPatience = 3000;  // milliseconds
constexpr int kBrightGray = 150; // text on brighter colours is black

bool wantsDark = false;
QColor wantedAccent; // invalid: that of the palette
bool ourDarkInstalled = false;

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

void tint(QPalette& palette, const QColor& accent) {
    const QColor text = qGray(accent.rgb()) > kBrightGray ? Qt::black : Qt::white;
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::Highlight, accent);
        palette.setColor(group, QPalette::HighlightedText, text);
    }
}

void installPalette() {
    const bool isDesktopDark = !ourDarkInstalled && isDark(QApplication::palette());
    ourDarkInstalled = wantsDark && !isDesktopDark;
    QPalette palette = ourDarkInstalled ? darkPalette() : QPalette();
    if (wantedAccent.isValid())
        tint(palette, wantedAccent);
    QApplication::setPalette(palette);
}

/// A value without the variants around it; the portal's old call wraps one in two.
QVariant unwrapped(QVariant value) {
    for (int depth = 0; depth < 3 && value.canConvert<QDBusVariant>(); ++depth)
        value = value.value<QDBusVariant>().variant();
    return value;
}

/// Three shares of red, green and blue. Anything else, also shares that are none, stands for no wish.
QColor colorFrom(const QVariant& value) {
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != "(ddd)"_L1)
        return {};
    double shares[3];
    argument.beginStructure();
    for (double& share : shares)
        argument >> share;
    argument.endStructure();
    for (const double share : shares)
        if (!(share >= 0 && share <= 1))
            return {};
    return QColor::fromRgbF(static_cast<float>(shares[0]), static_cast<float>(shares[1]), static_cast<float>(shares[2])).toRgb();
}

void rememberAndApply(const QString& key, const QVariant& value) {
    if (key == kScheme) {
        const bool dark = value.toUInt() == 1; // 0 is no wish, 2 light
        standardUserDefaults().setValue(kRememberedDark, dark);
        setWantsDark(dark);
    } else if (key == kAccent) {
        const QColor accent = colorFrom(value);
        standardUserDefaults().setValue(kRememberedAccent, accent.isValid() ? accent.name() : QString());
        setAccent(accent);
    }
}

/// Follows the changes that the portal announces.
class Follower final : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
public Q_SLOTS:
    void settingChanged(const QString& space, const QString& key, const QDBusVariant& value) {
        if (space == kNamespace)
            rememberAndApply(key, unwrapped(value.variant()));
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
    if (std::exchange(wantsDark, dark) != dark)
        installPalette();
}

void setAccent(const QColor& accent) {
    if (std::exchange(wantedAccent, accent) != accent)
        installPalette();
}

void applyRememberedScheme() {
    const QString forced = qEnvironmentVariable("QUODDLE_APPEARANCE");
    setWantsDark(forced.isEmpty() ? standardUserDefaults().value(kRememberedDark).toBool() : forced == "dark"_L1);
    if (forced.isEmpty())
        setAccent(QColor(standardUserDefaults().value(kRememberedAccent).toString()));
}

void followDesktop() {
    if (qEnvironmentVariableIsSet("QUODDLE_APPEARANCE"))
        return;
    auto bus = runningSessionBus();
    if (!bus)
        return;
    auto* follower = new Follower(qApp);
    bus->connect(kService, kPath, kInterface, u"SettingChanged"_s, follower, SLOT(settingChanged(QString, QString, QDBusVariant)));
    for (const auto key : {kScheme, kAccent}) {
        QDBusMessage question = QDBusMessage::createMethodCall(kService, kPath, kInterface, u"Read"_s);
        question << QString(kNamespace) << QString(key);
        auto* watcher = new QDBusPendingCallWatcher(bus->asyncCall(question, kPatience), follower);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, follower, [watcher, key] {
            watcher->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply = *watcher;
            if (reply.isValid())
                rememberAndApply(key, unwrapped(QVariant::fromValue(reply.value())));
        });
    }
}

} // namespace quoddle::Appearance

#include "Appearance.moc"

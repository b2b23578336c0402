// SPDX-License-Identifier: MIT
#include "platform/preview/PanelZoom.h"

#include <QApplication>
#include <QStyle>

namespace quoddle {

namespace {
constexpr int kDuration = 160; // milliseconds
}

PanelZoom::PanelZoom(QObject* parent) : QObject(parent) {
    mMove.setDuration(kDuration);
    mMove.setEasingCurve(QEasingCurve::OutCubic);
    connect(&mMove, &QVariantAnimation::valueChanged, this, [this](const QVariant& frame) {
        if (mGhost)
            mGhost->setGeometry(frame.toRect());
    });
    connect(&mMove, &QVariantAnimation::finished, this, &PanelZoom::ended);
}

bool PanelZoom::isPossible() {
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) > 0 &&
           !QGuiApplication::platformName().startsWith(QLatin1StringView("wayland"));
}

void PanelZoom::run(const QPixmap& picture, const QRect& from, const QRect& to, std::function<void()> done) {
    cancel();
    mDone = std::move(done);
    constexpr auto kFlags = Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus;
    mGhost = std::make_unique<QLabel>(nullptr, kFlags);
    mGhost->setAttribute(Qt::WA_ShowWithoutActivating);
    mGhost->setScaledContents(true);
    mGhost->setPixmap(picture);
    mGhost->setMinimumSize(1, 1);
    mGhost->setGeometry(from);
    mGhost->show();
    mMove.setStartValue(from);
    mMove.setEndValue(to);
    mMove.start();
}

void PanelZoom::cancel() {
    mDone = {};
    mMove.stop();
    mGhost.reset();
}

void PanelZoom::ended() {
    const std::unique_ptr<QLabel> ghost = std::move(mGhost); // kept until `done` has shown what follows
    if (const auto done = std::exchange(mDone, {}))
        done();
}

} // namespace quoddle

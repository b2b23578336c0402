// SPDX-License-Identifier: MIT
#include "platform/appkit/ProgressBar.h"

#include "platform/appkit/Appearance.h"

#include <QPainter>
#include <QVariantAnimation>

namespace quoddle {

namespace {

constexpr int kThickness = 6;
constexpr int kWanderMilliseconds = 1600;
constexpr double kPiece = 0.3; // of the bar's length

} // namespace

ProgressBar::ProgressBar(QWidget* parent) : QProgressBar(parent), mWandering(new QVariantAnimation(this)) {
    setTextVisible(false);
    setRange(0, 100);
    setValue(0);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    mWandering->setStartValue(0.0);
    mWandering->setEndValue(1.0);
    mWandering->setDuration(kWanderMilliseconds);
    mWandering->setLoopCount(-1);
    connect(mWandering, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
}

void ProgressBar::setIndeterminate(bool indeterminate) {
    if (indeterminate == mIndeterminate)
        return;
    mIndeterminate = indeterminate;
    updateRange();
    updateAnimation();
}

void ProgressBar::updateRange() {
    // A range of nothing is how QProgressBar, and with it a screen reader, knows "busy".
    setRange(0, mIndeterminate ? 0 : 100);
    setValue(mIndeterminate ? 0 : static_cast<int>(mValue));
    update();
}

void ProgressBar::setDoubleValue(double value) {
    mValue = std::clamp(value, 0.0, 100.0);
    if (!mIndeterminate)
        updateRange();
}

void ProgressBar::startAnimation() {
    mStarted = true;
    updateAnimation();
}

void ProgressBar::stopAnimation() {
    mStarted = false;
    updateAnimation();
}

void ProgressBar::updateAnimation() {
    if (isAnimating() && isVisible()) {
        if (mWandering->state() != QAbstractAnimation::Running)
            mWandering->start();
    } else {
        mWandering->stop();
    }
    update();
}

void ProgressBar::showEvent(QShowEvent* event) {
    QProgressBar::showEvent(event);
    updateAnimation();
}

void ProgressBar::hideEvent(QHideEvent* event) {
    QProgressBar::hideEvent(event);
    updateAnimation();
}

void ProgressBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF groove(0, (height() - kThickness) / 2.0, width(), kThickness);
    const double radius = kThickness / 2.0;
    painter.setBrush(Appearance::grooveColor(palette()));
    painter.drawRoundedRect(groove, radius, radius);

    QRectF filled = groove;
    if (mIndeterminate) {
        if (!isAnimating())
            return;
        // The piece enters at one end and leaves at the other, slow at both.
        const double phase = QEasingCurve(QEasingCurve::InOutSine).valueForProgress(mWandering->currentValue().toDouble());
        const double left = (phase * (1 + kPiece) - kPiece) * width();
        filled = QRectF(left, groove.y(), kPiece * width(), kThickness) & groove;
    } else {
        filled.setWidth(mValue > 0 ? std::max<double>(kThickness, groove.width() * mValue / 100) : 0);
    }
    if (layoutDirection() == Qt::RightToLeft)
        filled.moveLeft(width() - filled.right());
    if (filled.width() <= 0)
        return;
    painter.setBrush(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Highlight));
    painter.drawRoundedRect(filled, std::min(radius, filled.width() / 2), radius);
}

} // namespace quoddle

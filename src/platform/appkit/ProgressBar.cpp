// SPDX-License-Identifier: MIT
#include "platform/appkit/ProgressBar.h"

#include "platform/appkit/Appearance.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QVariantAnimation>

namespace quoddle {

namespace {

constexpr int kThickness = 6;
constexpr int kWanderMilliseconds = 1800;
constexpr double kPiece = 0.3; // the length of the wandering piece, as a part of the bar

QPainterPath roundedPath(const QRectF& bar) {
    QPainterPath path;
    path.addRoundedRect(bar, bar.height() / 2, bar.height() / 2);
    return path;
}

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
    // QProgressBar, and with it a screen reader, takes an empty range for "busy".
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

bool ProgressBar::event(QEvent* event) {
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::WindowUnblocked) {
        mIsBlocked = event->type() == QEvent::WindowBlocked;
        updateAnimation();
    }
    return QProgressBar::event(event);
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
    painter.setBrush(Appearance::grooveColor(palette()));
    painter.drawPath(roundedPath(groove));
    painter.setClipPath(roundedPath(groove));
    painter.setBrush(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Highlight));
    if (layoutDirection() == Qt::RightToLeft) {
        painter.translate(width(), 0);
        painter.scale(-1, 1);
    }
    if (!mIndeterminate) {
        const double filled = mValue > 0 ? std::max<double>(kThickness, groove.width() * mValue / 100) : 0;
        painter.drawPath(roundedPath({groove.x(), groove.y(), filled, groove.height()}));
    } else if (mStarted) {
        // The part that leaves at one end comes in at the other, so that the visible length stays the same.
        const double left = mWandering->currentValue().toDouble() * groove.width();
        for (double x : {left, left - groove.width()})
            painter.drawPath(roundedPath({x, groove.y(), kPiece * groove.width(), groove.height()}));
    }
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/appkit/WindowLayout.h"

#include <algorithm>

#include <QCoreApplication>
#include <QEvent>
#include <QLayout>
#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace quoddle {

namespace {

bool isWithin(const QSize& size, const QSize& room) {
    return size.boundedTo(room) == size;
}

int lowered(int minimum, int maximum, int excess, int room) {
    const bool isLarge = minimum > room / 2; // smaller ones are pictures and the like, which do not make a window too large
    return isLarge && minimum < maximum && excess > 0 ? std::max(0, minimum - excess) : minimum;
}

/// Lowers the minimum sizes of large contents by what the window is too large.
void lowerMinimumSizes(QWidget& window, const QSize& room) {
    const QSize excess = window.layout()->totalMinimumSize() - room;
    QList<QWidget*> widgets = window.findChildren<QWidget*>();
    widgets << &window;
    for (QWidget* widget : widgets)
        widget->setMinimumSize(lowered(widget->minimumWidth(), widget->maximumWidth(), excess.width(), room.width()),
                               lowered(widget->minimumHeight(), widget->maximumHeight(), excess.height(), room.height()));
}

} // namespace

void completeLayout(QWidget& window) {
    window.ensurePolished();
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        widget->ensurePolished();
        if (widget->layout())
            widget->updateGeometry(); // the layout may remember sizes from before it was changed
    }
    for (QLayout* layout : window.findChildren<QLayout*>())
        layout->invalidate();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    if (window.layout())
        window.layout()->activate();
}

QSize roomOnScreen(const QWidget& window) {
    constexpr int kFrame = 10; // the borders of the frame at both sides
    const int titleBar = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    return window.screen()->availableGeometry().size() - QSize(kFrame, titleBar + kFrame);
}

void fitToScreen(QWidget& window) {
    const QSize room = roomOnScreen(window);
    QLayout* layout = window.layout();
    if (layout && layout->sizeConstraint() == QLayout::SetFixedSize && !isWithin(layout->totalSizeHint(), room)) {
        layout->setSizeConstraint(QLayout::SetDefaultConstraint);
        window.setMinimumSize(0, 0);
        window.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    }
    if (layout && !isWithin(layout->totalMinimumSize(), room)) {
        lowerMinimumSizes(window, room);
        completeLayout(window);
    }
    const QSize fitting = window.size().boundedTo(room);
    if (fitting != window.size())
        window.resize(fitting);
}

} // namespace quoddle

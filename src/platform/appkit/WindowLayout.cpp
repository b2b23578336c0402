// SPDX-License-Identifier: MIT
#include "platform/appkit/WindowLayout.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLayout>
#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace quoddle {

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

void fitToScreen(QWidget& window) {
    const int titleBar = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const QSize room = window.screen()->availableGeometry().size() - QSize(0, titleBar);
    const QSize fitting = window.size().boundedTo(room);
    if (fitting != window.size())
        window.resize(fitting);
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/appkit/DrawnIconStyle.h"

#include "platform/appkit/DrawnIcon.h"

#include <QApplication>
#include <QPainter>

namespace quoddle {

namespace {

void paintMoreToTheRight(QPainter& painter) {
    painter.setPen(QPen(QApplication::palette().color(QPalette::ButtonText), 6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (const double left : {14.0, 34.0})
        painter.drawPolyline(QPolygonF{QPointF(left, 16), QPointF(left + 16, 32), QPointF(left, 48)});
}

void paintMoreBelow(QPainter& painter) {
    painter.translate(64, 0);
    painter.rotate(90);
    paintMoreToTheRight(painter);
}

void paintMoreToTheLeft(QPainter& painter) {
    painter.translate(64, 0);
    painter.scale(-1, 1);
    paintMoreToTheRight(painter);
}

} // namespace

QIcon DrawnIconStyle::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const {
    const bool isReversed = QApplication::layoutDirection() == Qt::RightToLeft;
    if (icon == SP_ToolBarHorizontalExtensionButton)
        return makeDrawnIcon(isReversed ? &paintMoreToTheLeft : &paintMoreToTheRight);
    if (icon == SP_ToolBarVerticalExtensionButton)
        return makeDrawnIcon(&paintMoreBelow);
    return QProxyStyle::standardIcon(icon, option, widget);
}

} // namespace quoddle

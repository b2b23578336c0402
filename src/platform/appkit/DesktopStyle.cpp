// SPDX-License-Identifier: MIT
#include "platform/appkit/DesktopStyle.h"

#include "platform/appkit/DrawnIcon.h"

#include <cmath>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QPainter>
#include <QStyleOption>

namespace quoddle {

using namespace Qt::StringLiterals;

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

/// Fills the outermost pixels of the screen within the rectangle.
void drawFrame(const QRect& rect, const QColor& color, QPainter& painter) {
    const QTransform toPixels = painter.deviceTransform();
    const QRectF exact = toPixels.mapRect(QRectF(rect));
    const QRect pixels(QPoint(qRound(exact.left()), qRound(exact.top())), QPoint(qRound(exact.right()) - 1, qRound(exact.bottom()) - 1));
    for (const QRect& line :
         {QRect(pixels.left(), pixels.top(), pixels.width(), 1), QRect(pixels.left(), pixels.bottom(), pixels.width(), 1),
          QRect(pixels.left(), pixels.top(), 1, pixels.height()), QRect(pixels.right(), pixels.top(), 1, pixels.height())})
        painter.fillRect(toPixels.inverted().mapRect(QRectF(line)), color);
}

} // namespace

void DesktopStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const {
    const bool isFrame = element == PE_Frame && qobject_cast<const QAbstractScrollArea*>(widget);
    const qreal scale = painter->device()->devicePixelRatio();
    if (!isFrame || scale == std::floor(scale) || baseStyle()->name() != "fusion"_L1)
        return QProxyStyle::drawPrimitive(element, option, painter, widget);
    drawFrame(option->rect, option->palette.color(QPalette::Window).darker(130), *painter);
}

QIcon DesktopStyle::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const {
    const bool isReversed = QApplication::layoutDirection() == Qt::RightToLeft;
    if (icon == SP_ToolBarHorizontalExtensionButton)
        return makeDrawnIcon(isReversed ? &paintMoreToTheLeft : &paintMoreToTheRight);
    if (icon == SP_ToolBarVerticalExtensionButton)
        return makeDrawnIcon(&paintMoreBelow);
    return QProxyStyle::standardIcon(icon, option, widget);
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "droplet/NSImage+Additions.h"

#include "platform/appkit/DrawnIcon.h"

#include <algorithm>

#include <QPainterPath>

namespace quoddle {

namespace {

// The following functions paint in the space of 64 points that paintTemplate() has set up, with its pen.

void paintArrowDown(QPainter& painter, double top, double bottom) {
    painter.drawLine(QPointF(32, top), QPointF(32, bottom));
    QPainterPath head;
    head.moveTo(22, bottom - 10);
    head.lineTo(32, bottom);
    head.lineTo(42, bottom - 10);
    painter.drawPath(head);
}

/// Paints an arrow into a tray.
void paintDrop(QPainter& painter) {
    paintArrowDown(painter, 8, 38);
    QPainterPath tray;
    tray.moveTo(10, 36);
    tray.lineTo(10, 54);
    tray.lineTo(54, 54);
    tray.lineTo(54, 36);
    painter.drawPath(tray);
}

/// Paints a magnifying glass.
void paintSpotlight(QPainter& painter) {
    painter.drawEllipse(QPointF(27, 27), 18, 18);
    painter.drawLine(QPointF(40.5, 40.5), QPointF(56, 56));
}

/// Paints an empty field, which invites files.
void paintForthcoming(QPainter& painter) {
    QPen pen = painter.pen();
    pen.setWidthF(2.5);
    painter.setPen(pen);
    paintArrowDown(painter, 20, 44);
    pen.setDashPattern({3.2, 2.4});
    painter.setPen(pen);
    painter.drawRoundedRect(QRectF(4, 4, 56, 56), 10, 10);
}

constexpr std::pair<QLatin1StringView, PaintOn64> kTemplates[] = {
    {QLatin1StringView("ForthcomingTemplate"), &paintForthcoming},
    {QLatin1StringView("DropTemplate"), &paintDrop},
    {QLatin1StringView("SpotlightTemplate"), &paintSpotlight},
};

/// The function that paints the image of the name; null for an unknown name.
PaintOn64 templateNamed(const QString& name) {
    const auto* known = std::find_if(std::begin(kTemplates), std::end(kTemplates), [&](const auto& each) { return each.first == name; });
    return known == std::end(kTemplates) ? nullptr : known->second;
}

} // namespace

QIcon templateIconNamed(const QString& name) {
    const PaintOn64 paint = templateNamed(name);
    return paint ? makeTemplateIcon(paint) : QIcon();
}

QPixmap tintedImageWithColor(const QPixmap& image, const QColor& color, QPainter::CompositionMode operation) {
    QPixmap tinted(image.size());
    tinted.setDevicePixelRatio(image.devicePixelRatio());
    tinted.fill(Qt::transparent);
    QPainter painter(&tinted);
    painter.drawPixmap(0, 0, image);
    painter.setCompositionMode(operation);
    painter.fillRect(QRectF(QPointF(), image.deviceIndependentSize()), color);
    return tinted;
}

QPixmap pixmapWithin(const QImage& image, int points, double devicePixelRatio) {
    QPixmap pixmap =
        QPixmap::fromImage(image.scaled(QSize(points, points) * devicePixelRatio, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

QPixmap templateImageNamed(const QString& name, int points, double devicePixelRatio) {
    const PaintOn64 paint = templateNamed(name);
    if (!paint)
        return {};
    QPixmap image(QSize(points, points) * devicePixelRatio);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintTemplate(painter, points, paint, Qt::black);
    return image;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "droplet/NSImage+Additions.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>

namespace quoddle {

namespace {

// All three are drawn on a field of 64 by 64.
constexpr double kField = 64;

void paintArrowDown(QPainter& painter, double top, double bottom) {
    painter.drawLine(QPointF(32, top), QPointF(32, bottom));
    QPainterPath head;
    head.moveTo(22, bottom - 10);
    head.lineTo(32, bottom);
    head.lineTo(42, bottom - 10);
    painter.drawPath(head);
}

/// An arrow into a tray.
void paintDrop(QPainter& painter) {
    paintArrowDown(painter, 8, 38);
    QPainterPath tray;
    tray.moveTo(10, 36);
    tray.lineTo(10, 54);
    tray.lineTo(54, 54);
    tray.lineTo(54, 36);
    painter.drawPath(tray);
}

/// A magnifying glass.
void paintSpotlight(QPainter& painter) {
    painter.drawEllipse(QPointF(27, 27), 18, 18);
    painter.drawLine(QPointF(40.5, 40.5), QPointF(56, 56));
}

/// A field for something that is still to come.
void paintForthcoming(QPainter& painter) {
    QPen pen = painter.pen();
    pen.setWidthF(2.5);
    painter.setPen(pen);
    paintArrowDown(painter, 20, 44);
    pen.setDashPattern({3.2, 2.4});
    painter.setPen(pen);
    painter.drawRoundedRect(QRectF(4, 4, 56, 56), 10, 10);
}

using Paint = void (*)(QPainter& painter);
constexpr std::pair<QLatin1StringView, Paint> kTemplates[] = {
    {QLatin1StringView("ForthcomingTemplate"), &paintForthcoming},
    {QLatin1StringView("DropTemplate"), &paintDrop},
    {QLatin1StringView("SpotlightTemplate"), &paintSpotlight},
};

class TemplateIcon final : public QIconEngine {
public:
    explicit TemplateIcon(QString name) : mName(std::move(name)) {}

    void paint(QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State state) override {
        const QPalette palette = QApplication::palette();
        const QColor color = mode == QIcon::Disabled ? palette.color(QPalette::Disabled, QPalette::ButtonText)
                             : state == QIcon::On    ? palette.color(QPalette::Highlight)
                                                     : palette.color(QPalette::ButtonText);
        const int extent = std::min(area.width(), area.height());
        const QPixmap image = templateImageNamed(mName, extent, painter->device()->devicePixelRatioF());
        painter->drawPixmap(area.center() - QPoint((extent - 1) / 2, (extent - 1) / 2), tintedImageWithColor(image, color));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap drawn(size);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        paint(&painter, drawn.rect(), mode, state);
        return drawn;
    }

    QIconEngine* clone() const override { return new TemplateIcon(mName); }

private:
    const QString mName;
};

} // namespace

QIcon templateIconNamed(const QString& name) {
    return QIcon(new TemplateIcon(name));
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

QPixmap templateImageNamed(const QString& name, int points, double devicePixelRatio) {
    for (const auto& [known, paint] : kTemplates) {
        if (name != known)
            continue;
        QPixmap image(QSize(points, points) * devicePixelRatio);
        image.setDevicePixelRatio(devicePixelRatio);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(points / kField, points / kField);
        painter.setPen(QPen(Qt::black, 5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        paint(painter);
        return image;
    }
    return {};
}

} // namespace quoddle

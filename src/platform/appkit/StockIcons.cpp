// SPDX-License-Identifier: MIT
#include "platform/appkit/StockIcons.h"

#include "platform/appkit/BestPictures.h"
#include "platform/appkit/DrawnIcon.h"
#include "platform/appkit/ImageFile.h"

#include <QPainter>
#include <QPainterPath>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxIconExtent = 1024; // the side in pixels of the largest picture in an icon file
constexpr int kMaxPictures = 32;     // an icon file holds several sizes

/// Paints a white exclamation mark on a field of 64 by 64.
void paintMark(QPainter& painter, double top, double height) {
    painter.setBrush(Qt::white);
    const double width = height / 4.6;
    QPainterPath stroke;
    stroke.moveTo(32 - width / 2, top + width / 2);
    stroke.arcTo(QRectF(32 - width / 2, top, width, width), 180, -180);
    stroke.lineTo(32 + width / 3.4, top + height * 0.66);
    stroke.arcTo(QRectF(32 - width / 3.4, top + height * 0.66 - width / 3.4, width / 1.7, width / 1.7), 0, -180);
    stroke.closeSubpath();
    painter.drawPath(stroke);
    painter.drawEllipse(QPointF(32, top + height - width / 2), width / 2, width / 2);
}

void paintStop(QPainter& painter) {
    QPainterPath octagon;
    constexpr double kNear = 19.5, kFar = 44.5, kMin = 3, kMax = 61;
    octagon.moveTo(kNear, kMin);
    for (const QPointF& corner : {QPointF(kFar, kMin), QPointF(kMax, kNear), QPointF(kMax, kFar), QPointF(kFar, kMax), QPointF(kNear, kMax),
                                  QPointF(kMin, kFar), QPointF(kMin, kNear)})
        octagon.lineTo(corner);
    octagon.closeSubpath();
    QLinearGradient red(0, kMin, 0, kMax);
    red.setColorAt(0, QColor(0xf0, 0x54, 0x4f));
    red.setColorAt(1, QColor(0xc9, 0x22, 0x2b));
    painter.setPen(QPen(red, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(red);
    painter.drawPath(octagon);
    painter.setPen(Qt::NoPen);
    paintMark(painter, 15, 34);
}

void paintCaution(QPainter& painter) {
    QPainterPath triangle(QPointF(32, 8));
    triangle.lineTo(59, 54);
    triangle.lineTo(5, 54);
    triangle.closeSubpath();
    QLinearGradient amber(0, 4, 0, 58);
    amber.setColorAt(0, QColor(0xff, 0xc8, 0x3d));
    amber.setColorAt(1, QColor(0xf0, 0x97, 0x0a));
    painter.setPen(QPen(amber, 9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(amber);
    painter.drawPath(triangle);
    painter.setPen(Qt::NoPen);
    paintMark(painter, 20, 32);
}

void paintSheet(QPainter& painter, const QPointF& corner, double angle) {
    constexpr double kWidth = 30, kHeight = 38, kFold = 9;
    painter.save();
    painter.translate(corner);
    painter.rotate(angle);
    QPainterPath sheet;
    sheet.moveTo(0, 0);
    sheet.lineTo(kWidth - kFold, 0);
    sheet.lineTo(kWidth, kFold);
    sheet.lineTo(kWidth, kHeight);
    sheet.lineTo(0, kHeight);
    sheet.closeSubpath();
    QLinearGradient paper(0, 0, 0, kHeight);
    paper.setColorAt(0, Qt::white);
    paper.setColorAt(1, QColor(0xe6, 0xe9, 0xee));
    painter.setPen(QPen(QColor(0x9a, 0xa3, 0xb0), 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(paper);
    painter.drawPath(sheet);
    painter.drawPolyline(QPolygonF{{kWidth - kFold, 0}, {kWidth - kFold, kFold}, {kWidth, kFold}});
    painter.setPen(QPen(QColor(0xb8, 0xc0, 0xcb), 2, Qt::SolidLine, Qt::RoundCap));
    for (double y = 15; y < kHeight - 5; y += 6)
        painter.drawLine(QPointF(5, y), QPointF(kWidth - 5, y));
    painter.restore();
}

void paintMultipleDocuments(QPainter& painter) {
    paintSheet(painter, {8, 14}, -14);
    paintSheet(painter, {25, 7}, 12);
    paintSheet(painter, {17, 16}, 0);
}

} // namespace

QIcon multipleDocumentsIcon() {
    return makeDrawnIcon(paintMultipleDocuments);
}

QIcon iconForFileType(FourCharCode type) {
    if (type == "stop"_4cc)
        return makeDrawnIcon(paintStop);
    if (type == "caut"_4cc)
        return makeDrawnIcon(paintCaution);
    return {};
}

QIcon iconFromImageFile(const QString& path) {
    ImageFile file(path);
    QIcon icon;
    for (const QImage& picture : bestPictures(file, path, kMaxIconExtent, kMaxPictures))
        icon.addPixmap(QPixmap::fromImage(picture));
    return icon;
}

QPixmap pixmapForIcon(const QIcon& icon, int points, double devicePixelRatio) {
    if (icon.isNull())
        return {};
    QPixmap pixmap = icon.pixmap(QSize(points, points), devicePixelRatio);
    const QSize wanted = QSize(points, points) * devicePixelRatio;
    if (pixmap.width() < wanted.width() && pixmap.height() < wanted.height()) // a picture that is too small is enlarged
        pixmap = pixmap.scaled(wanted, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/appkit/BundleIcon.h"

#include "platform/appkit/DrawnIcon.h"
#include "platform/appkit/StockIcons.h"
#include "platform/foundation/NSBundle.h"

#include <QApplication>
#include <QFileInfo>
#include <QPainter>
#include <QPainterPath>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

void paintSheet(QPainter& painter) {
    painter.setBrush(QColor(255, 255, 255, 240));
    painter.drawRoundedRect(QRectF(16, 13, 27, 37), 3.5, 3.5);
    painter.setBrush(QColor(0x3b, 0x52, 0xa8, 110));
    constexpr double kWidths[] = {17, 12, 15, 9};
    for (int line = 0; line < 4; ++line)
        painter.drawRoundedRect(QRectF(line % 2 ? 24 : 20.5, 19 + line * 6.5, kWidths[line], 2.6), 1.3, 1.3);
}

void paintArrow(QPainter& painter) {
    painter.setBrush(QColor(0x35, 0xb3, 0x6a));
    painter.drawEllipse(QPointF(43, 43), 11.5, 11.5);
    QPainterPath arrow(QPointF(39.8, 37.2));
    arrow.lineTo(49, 43);
    arrow.lineTo(39.8, 48.8);
    arrow.closeSubpath();
    painter.setBrush(Qt::white);
    painter.drawPath(arrow);
}

/// Paints a sheet of script on a rounded tile, and the arrow that runs it.
void paintApplet(QPainter& painter) {
    QLinearGradient tile(0, 4, 0, 60);
    tile.setColorAt(0, QColor(0x62, 0x86, 0xd9));
    tile.setColorAt(1, QColor(0x3b, 0x52, 0xa8));
    painter.setBrush(tile);
    painter.drawRoundedRect(QRectF(4, 4, 56, 56), 13, 13);
    paintSheet(painter);
    paintArrow(painter);
}

} // namespace

QIcon genericAppletIcon() {
    return makeDrawnIcon(paintApplet);
}

QString pathForImageResource(const NSBundle& bundle, const QString& name) {
    static const QStringList sTypes = {u"icns"_s, u"png"_s, u"tiff"_s, u"tif"_s, u"jpg"_s, u"jpeg"_s, u"gif"_s,
                                       u"bmp"_s,  u"svg"_s, u"webp"_s, u"ico"_s, u"pdf"_s, u"pict"_s};
    if (name.isEmpty() || name.contains(u'/'))
        return {};
    if (sTypes.contains(QFileInfo(name).suffix(), Qt::CaseInsensitive))
        return bundle.pathForResource(name, {});
    for (const QString& type : sTypes)
        if (const QString path = bundle.pathForResource(name, type); !path.isEmpty())
            return path;
    return {};
}

QIcon applicationIcon(const NSBundle* bundle) {
    if (QApplication::windowIcon().isNull())
        QApplication::setWindowIcon(bundle ? iconForBundle(*bundle) : genericAppletIcon());
    return QApplication::windowIcon();
}

QIcon iconForBundle(const NSBundle& bundle) {
    const QString path = pathForImageResource(bundle, bundle.infoDictionary().value(u"CFBundleIconFile"_s).toString());
    if (!path.isEmpty())
        if (const QIcon icon = iconFromImageFile(path); !icon.isNull())
            return icon;
    return genericAppletIcon();
}

} // namespace quoddle

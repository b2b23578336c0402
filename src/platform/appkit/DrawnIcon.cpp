// SPDX-License-Identifier: MIT
#include "platform/appkit/DrawnIcon.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

namespace quoddle {

namespace {

constexpr double kField = 64;
constexpr double kTemplatePen = 5;

enum class Coloring { own, ofButtons };

QColor buttonColor(QIcon::Mode mode, QIcon::State state) {
    const QPalette palette = QApplication::palette();
    if (mode == QIcon::Disabled)
        return palette.color(QPalette::Disabled, QPalette::ButtonText);
    return palette.color(state == QIcon::On ? QPalette::Highlight : QPalette::ButtonText);
}

class DrawnIconEngine final : public QIconEngine {
public:
    DrawnIconEngine(PaintOn64 paintOn64, Coloring coloring) : mPaint(paintOn64), mColoring(coloring) {}

    void paint(QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State state) override {
        const int extent = std::min(area.width(), area.height());
        painter->save();
        painter->translate(area.center() - QPoint((extent - 1) / 2, (extent - 1) / 2));
        if (mColoring == Coloring::ofButtons)
            paintTemplate(*painter, extent, mPaint, buttonColor(mode, state));
        else
            paintInOwnColors(*painter, extent, mode);
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new DrawnIconEngine(mPaint, mColoring); }

private:
    void paintInOwnColors(QPainter& painter, double extent, QIcon::Mode mode) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(extent / kField, extent / kField);
        if (mode == QIcon::Disabled)
            painter.setOpacity(0.5);
        painter.setPen(Qt::NoPen);
        mPaint(painter);
    }

    const PaintOn64 mPaint;
    const Coloring mColoring;
};

} // namespace

QIcon makeDrawnIcon(PaintOn64 paint) {
    return QIcon(new DrawnIconEngine(paint, Coloring::own));
}

QIcon makeTemplateIcon(PaintOn64 paint) {
    return QIcon(new DrawnIconEngine(paint, Coloring::ofButtons));
}

void paintTemplate(QPainter& painter, double extent, PaintOn64 paint, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(extent / kField, extent / kField);
    painter.setPen(QPen(color, kTemplatePen, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    paint(painter);
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/appkit/DrawnIcon.h"

#include <QIconEngine>
#include <QPainter>

namespace quoddle {

namespace {

class DrawnIconEngine final : public QIconEngine {
public:
    explicit DrawnIconEngine(void (*paintOn64)(QPainter&)) : mPaint(paintOn64) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / 64.0, rect.height() / 64.0);
        if (mode == QIcon::Disabled)
            painter->setOpacity(0.5);
        painter->setPen(Qt::NoPen);
        mPaint(*painter);
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new DrawnIconEngine(mPaint); }

private:
    void (*mPaint)(QPainter&);
};

} // namespace

QIcon makeDrawnIcon(void (*paintOn64)(QPainter& painter)) {
    return QIcon(new DrawnIconEngine(paintOn64));
}

} // namespace quoddle

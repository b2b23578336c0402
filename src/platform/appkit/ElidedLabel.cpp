// SPDX-License-Identifier: MIT
#include "platform/appkit/ElidedLabel.h"

#include "platform/appkit/NSPanel.h"

#include "platform/appkit/Appearance.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

namespace quoddle {

namespace {

bool isFigure(QChar c) {
    return c.category() == QChar::Number_DecimalDigit;
}

int figureWidth(const QFontMetrics& metrics) {
    int widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

} // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void ElidedLabel::setText(const QString& text) {
    QLabel::setText(text);
    updateToolTip();
}

void ElidedLabel::setSecondary(bool secondary) {
    mSecondary = secondary;
    update();
}

void ElidedLabel::setTabularFigures(bool tabularFigures) {
    mTabularFigures = tabularFigures;
    updateToolTip();
    update();
}

void ElidedLabel::setElideMode(Qt::TextElideMode mode) {
    mElideMode = mode;
    update();
}

int ElidedLabel::widthOf(const QString& line) const {
    if (!mTabularFigures)
        return fontMetrics().horizontalAdvance(line);
    const int figure = figureWidth(fontMetrics());
    int width = 0;
    QString run;
    for (QChar c : line) {
        if (!isFigure(c)) {
            run += c;
            continue;
        }
        width += fontMetrics().horizontalAdvance(run) + figure;
        run.clear();
    }
    return width + fontMetrics().horizontalAdvance(run);
}

bool ElidedLabel::isElided() const {
    return widthOf(text().simplified()) > contentsRect().width();
}

QString ElidedLabel::visibleText() const {
    const QString line = text().simplified();
    const int room = contentsRect().width();
    const int width = widthOf(line);
    if (width <= room)
        return line;
    // Figures of equal width may take more room than the font metrics know; the rest of the line gets that much less.
    const int excess = width - fontMetrics().horizontalAdvance(line);
    return fontMetrics().elidedText(line, mElideMode, std::max(0, room - excess));
}

QSize ElidedLabel::sizeHint() const {
    const QMargins margins = contentsMargins();
    return {200 + margins.left() + margins.right(), fontMetrics().lineSpacing() + margins.top() + margins.bottom()};
}

void ElidedLabel::drawLine(QPainter& painter, const QString& line) const {
    const QRect area = contentsRect();
    // A line is drawn in its own direction, whatever the interface's language: an interface from right to left would turn "83% completed"
    // round.
    painter.setLayoutDirection(line.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    if (!mTabularFigures || line.isRightToLeft()) {
        // A painter aligns by its own direction, which is not always the label's, so the alignment is resolved here.
        const auto visual = QStyle::visualAlignment(layoutDirection(), Qt::AlignVCenter | (alignment() & Qt::AlignHorizontal_Mask));
        painter.drawText(area, static_cast<int>(visual | Qt::AlignAbsolute) | Qt::TextSingleLine, line);
        return;
    }
    const int figure = figureWidth(fontMetrics());
    const int baseline = area.top() + (area.height() - fontMetrics().height()) / 2 + fontMetrics().ascent();
    int x = layoutDirection() == Qt::RightToLeft ? area.right() + 1 - widthOf(line) : area.left();
    for (qsizetype at = 0; at < line.size();) {
        qsizetype end = at;
        while (end < line.size() && !isFigure(line[end]))
            ++end;
        const QString run = line.mid(at, end - at);
        painter.drawText(x, baseline, run);
        x += fontMetrics().horizontalAdvance(run);
        for (; end < line.size() && isFigure(line[end]); ++end, x += figure)
            painter.drawText(x + (figure - fontMetrics().horizontalAdvance(line[end])) / 2, baseline, QString(line[end]));
        at = end;
    }
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(mSecondary ? Appearance::secondaryLabelColor(palette()) : palette().color(QPalette::WindowText));
    drawLine(painter, visibleText());
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    updateToolTip();
}

void ElidedLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        updateGeometry();
        updateToolTip();
    }
}

void ElidedLabel::updateToolTip() {
    // Tool tips take some texts for rich text; a script's text never is.
    setToolTip(isElided() ? toolTipText(text()) : QString());
}

} // namespace quoddle

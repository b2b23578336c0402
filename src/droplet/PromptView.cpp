// SPDX-License-Identifier: MIT
#include "droplet/PromptView.h"

#include <QLabel>
#include <QPainter>
#include <QResizeEvent>
#include <QScrollBar>
#include <QStyleOption>

#include <algorithm>

namespace quoddle {

namespace {

constexpr qsizetype kLongestText = 5000; // UTF-16 units
constexpr int kMostLines = 10;
constexpr int kFewestLines = 2; // the least number of lines that a longer text has in a small window
constexpr int kNarrowest = 100; // points

} // namespace

PromptView::PromptView(QWidget* parent) : QScrollArea(parent), mLabel(new QLabel) {
    mLabel->setTextFormat(Qt::PlainText);
    mLabel->setWordWrap(true);
    setWidget(mLabel);
    setWidgetResizable(true);
    setFrameShape(NoFrame);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(tr("Prompt"));
    for (QWidget* widget : {static_cast<QWidget*>(mLabel), viewport()})
        widget->setAutoFillBackground(false); // the pane's own colour shows through
    for (const QScrollBar* bar : {horizontalScrollBar(), verticalScrollBar()})
        connect(bar, &QScrollBar::rangeChanged, this, &PromptView::takeKeyboardIfScrolling);
}

void PromptView::takeKeyboardIfScrolling() {
    const bool isScrolling = horizontalScrollBar()->maximum() > 0 || verticalScrollBar()->maximum() > 0;
    setFocusPolicy(isScrolling ? Qt::TabFocus : Qt::NoFocus);
}

QString PromptView::text() const {
    return mLabel->text();
}

void PromptView::setText(const QString& text) {
    mLabel->setText(text.size() > kLongestText ? text.left(kLongestText) + u'\u2026' : text);
    setHidden(text.isEmpty());
    updateGeometry();
}

void PromptView::setTextAlignment(Qt::Alignment alignment) {
    mLabel->setAlignment(alignment);
}

void PromptView::setTextColor(const QColor& color) {
    QPalette labels;
    if (color.isValid())
        labels.setColor(QPalette::WindowText, color);
    mLabel->setPalette(labels);
}

int PromptView::heightOfLines(int most) const {
    const bool isTooWide = mLabel->minimumSizeHint().width() > width();
    const int scroller = isTooWide ? horizontalScrollBar()->sizeHint().height() : 0;
    return std::clamp(mLabel->heightForWidth(width()), 0, most * fontMetrics().lineSpacing()) + scroller;
}

QSize PromptView::sizeHint() const {
    return {kNarrowest, heightOfLines(kMostLines)};
}

QSize PromptView::minimumSizeHint() const {
    return {kNarrowest, heightOfLines(kFewestLines)};
}

void PromptView::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    if (event->oldSize().width() != event->size().width())
        updateGeometry();
}

void PromptView::paintEvent(QPaintEvent* event) {
    QScrollArea::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(viewport());
    QStyleOptionFocusRect option;
    option.initFrom(viewport());
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void PromptView::focusInEvent(QFocusEvent* event) {
    QScrollArea::focusInEvent(event);
    viewport()->update();
}

void PromptView::focusOutEvent(QFocusEvent* event) {
    QScrollArea::focusOutEvent(event);
    viewport()->update();
}

} // namespace quoddle

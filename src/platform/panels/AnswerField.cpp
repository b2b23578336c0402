// SPDX-License-Identifier: MIT
#include "platform/panels/AnswerField.h"

#include <cmath>

#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QStyleOptionFrame>
#include <QTextBlock>

namespace quoddle {

namespace {

constexpr int kMostLines = 10;
constexpr int kLeastWidth = 120;
constexpr int kTextMargin = 2;
constexpr int kSpaceAbove = 2; // as much as below, where the text has its leading

} // namespace

AnswerField::AnswerField(QWidget* parent) : QPlainTextEdit(parent) {
    setTabChangesFocus(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    document()->setDocumentMargin(kTextMargin);
    setViewportMargins(0, kSpaceAbove, 0, 0);
    viewport()->setAutoFillBackground(false); // the style draws the frame together with the background
    connect(this, &QPlainTextEdit::textChanged, this, &AnswerField::alignToWriting);
    connect(this, &QPlainTextEdit::textChanged, this, &AnswerField::fitHeight);
    fitHeight();
}

void AnswerField::setStringValue(const QString& text) {
    mGiven = text;
    setPlainText(text);
    document()->setModified(false);
}

QString AnswerField::stringValue() const {
    if (!document()->isModified())
        return mGiven;
    // toPlainText() would turn no-break spaces into ordinary ones.
    QString text = document()->toRawText();
    const bool usesReturns = mGiven.contains(u'\r') && !mGiven.contains(u'\n');
    text.replace(QChar::ParagraphSeparator, usesReturns ? u'\r' : u'\n');
    text.replace(QChar::LineSeparator, usesReturns ? u'\r' : u'\n');
    return text;
}

void AnswerField::fitHeight() {
    const int quarter = screen()->availableGeometry().height() / 4 / fontMetrics().lineSpacing(); // the prompt needs room, too
    const int mostLines = std::clamp(quarter, 1, kMostLines);
    const int lines = std::clamp(static_cast<int>(std::ceil(document()->size().height())), 1, mostLines);
    const bool scrolls = document()->size().height() > mostLines;
    setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    const int margins = 2 * (kTextMargin + frameWidth()) + contentsMargins().top() + contentsMargins().bottom();
    const int height = lines * fontMetrics().lineSpacing() + margins + kSpaceAbove;
    if (height != minimumHeight())
        setFixedHeight(height);
}

// Lets the text begin on the side where its writing begins, whatever the interface's language.
void AnswerField::alignToWriting() {
    const QString text = document()->firstBlock().text();
    QTextOption option = document()->defaultTextOption();
    const auto direction = (text.isEmpty() ? isRightToLeft() : text.isRightToLeft()) ? Qt::RightToLeft : Qt::LeftToRight;
    const auto alignment = direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    if (option.textDirection() == direction && option.alignment() == alignment)
        return;
    option.setTextDirection(direction);
    option.setAlignment(alignment);
    document()->setDefaultTextOption(option);
}

QSize AnswerField::sizeHint() const {
    return {2 * kLeastWidth, minimumHeight()};
}

QSize AnswerField::minimumSizeHint() const {
    return {kLeastWidth, minimumHeight()};
}

bool AnswerField::event(QEvent* event) {
    if (event->type() == QEvent::Paint) { // draws the frame of a line edit
        QPainter painter(this);
        QStyleOptionFrame option;
        initStyleOption(&option);
        option.state |= QStyle::State_Sunken;
        option.state.setFlag(QStyle::State_HasFocus, hasFocus());
        option.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, this);
        style()->drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter, this);
        return true;
    }
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    return QPlainTextEdit::event(event);
}

void AnswerField::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        event->ignore();
        return;
    default:
        QPlainTextEdit::keyPressEvent(event);
    }
}

void AnswerField::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    fitHeight();
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The applet's prompt in one of the droplet's panes. A script may have written any amount of text: a text longer than a few lines scrolls,
// by keyboard as well, so that the pane keeps its room.
// Main thread only.
#pragma once

#include <QScrollArea>

class QLabel;

namespace quoddle {

class PromptView : public QScrollArea {
    Q_OBJECT
public:
    explicit PromptView(QWidget* parent = nullptr);

    QString text() const;
    /// Sets the prompt: plain text, of which at most 5000 UTF-16 units are shown. The view is hidden while the text is empty.
    void setText(const QString& text);
    /// Sets the alignment; initially leading.
    void setTextAlignment(Qt::Alignment alignment);
    /// Sets the colour of the text; an invalid one means the colour of labels.
    void setTextColor(const QColor& color);

    /// The height is that of the text at the present width, within bounds.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    int heightOfLines(int most) const;
    void takeKeyboardIfScrolling();

    QLabel* mLabel;
};

} // namespace quoddle

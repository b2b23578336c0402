// SPDX-License-Identifier: MIT
// The applet's prompt in one of the droplet's panes. A script may have written any amount of text: what is longer than a few lines scrolls,
// by keyboard as well, and leaves the pane its room.
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
    /// Plain text, cut where it is longer than anybody would read. Without text the view is hidden.
    void setText(const QString& text);
    /// Initially leading.
    void setTextAlignment(Qt::Alignment alignment);
    /// An invalid one: that of labels.
    void setTextColor(const QColor& color);

    /// As high as the text is at the present width, within bounds.
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

// SPDX-License-Identifier: MIT
// A line of text that is cut with an ellipsis where it does not fit and then shows the whole text in a tool tip.
// One decision: its size never depends on its text, so that a layout around it stands still whatever it says. There is one line only, in
// which line ends become blanks. Text is plain, never markup.
#pragma once

#include <QLabel>

namespace quoddle {

class ElidedLabel : public QLabel {
    Q_OBJECT
    Q_PROPERTY(Qt::TextElideMode elideMode READ elideMode WRITE setElideMode)
    Q_PROPERTY(bool secondary READ isSecondary WRITE setSecondary)
    Q_PROPERTY(bool tabularFigures READ hasTabularFigures WRITE setTabularFigures)
public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    /// Screen readers are told the text in full.
    void setText(const QString& text);
    /// Whether the text has the quieter colour of additional information; false unless set.
    bool isSecondary() const { return mSecondary; }
    void setSecondary(bool secondary);
    /// Whether all digits are as wide as the widest, so that counting does not make the line tremble. Such a line begins at the label's
    /// edge, whatever its alignment. False unless set.
    bool hasTabularFigures() const { return mTabularFigures; }
    void setTabularFigures(bool tabularFigures);
    /// The place of the ellipsis; at the end unless set.
    Qt::TextElideMode elideMode() const { return mElideMode; }
    void setElideMode(Qt::TextElideMode mode);
    bool isElided() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void updateToolTip();
    int widthOf(const QString& line) const;
    QString visibleText() const;
    void drawLine(QPainter& painter, const QString& line) const;

    Qt::TextElideMode mElideMode = Qt::ElideRight;
    bool mSecondary = false;
    bool mTabularFigures = false;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// A text field that looks like a line and grows with its text: line breaks that a script or the clipboard puts in are kept.
// One decision: the field leaves Return and Escape to the panel. Main thread only.
#pragma once

#include <QPlainTextEdit>

namespace quoddle {

class AnswerField final : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit AnswerField(QWidget* parent = nullptr);

    /// Sets the text. Line breaks of any kind are shown as line breaks.
    void setStringValue(const QString& text);
    /// The text as it was set, as long as nobody has changed it. A changed text has the kind of line breaks that the text had when it was
    /// set ("\n" when it had none).
    QString stringValue() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void alignToWriting();
    void fitHeight();

    QString mGiven;
};

} // namespace quoddle

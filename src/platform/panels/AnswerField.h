// SPDX-License-Identifier: MIT
// A text field that looks like a line and grows with its text: line breaks that a script or the clipboard puts in are kept.
// One decision: Return and Escape are not its own; they go to the panel. Main thread only.
#pragma once

#include <QPlainTextEdit>

namespace quoddle {

class AnswerField final : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit AnswerField(QWidget* parent = nullptr);

    /// Line breaks of any kind are shown as such.
    void setStringValue(const QString& text);
    /// What was set, while nobody has changed it; afterwards with the kind of line breaks that it had ("\n" when it had none).
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

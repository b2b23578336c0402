// SPDX-License-Identifier: MIT
// Shows an applet's description: as tall as its text up to a limit, with a scroll bar beyond. Hidden while it is empty. Links open in the
// desktop's programs; text can be selected and copied.
#pragma once

#include <QTextBrowser>

namespace quoddle {

class DescriptionView : public QTextBrowser {
    Q_OBJECT
public:
    explicit DescriptionView(QWidget* parent = nullptr);

    /// Shows the text of a rich text file or folder, or a sentence that it is too much to be shown. Leaves the text as it is when the file
    /// cannot be read or is empty.
    void setDescription(const QString& path);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    /// Answers nothing, so that pictures come out of the document alone, never from a file or an address that a description names.
    QVariant loadResource(int type, const QUrl& name) override;

private:
    /// Fits the colours of a description to the palette.
    void adapt(QTextDocument& description) const;

    int mTextHeight = 0; // points at the width of the size hint; a number beyond the largest height may be too small
};

} // namespace quoddle

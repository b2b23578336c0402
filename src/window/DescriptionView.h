// SPDX-License-Identifier: MIT
// Shows an applet's description: as tall as its text as long as that is not much, with a scroll bar beyond. Hidden while it is empty. Links
// open in the desktop's programs; text can be selected and copied.
#pragma once

#include <QTextBrowser>

namespace quoddle {

class DescriptionView : public QTextBrowser {
    Q_OBJECT
public:
    explicit DescriptionView(QWidget* parent = nullptr);

    /// Replaces the text by that of a rich text file or folder, or says that there is more of it than can be shown; leaves it as it is when
    /// that cannot be read or is empty.
    void setDescription(const QString& path);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    /// Pictures come out of the document alone, never from a file or an address that a description names.
    QVariant loadResource(int type, const QUrl& name) override;

private:
    /// Fits the colours to the palette.
    void adapt(QTextDocument& description) const;

    int mTextHeight = 0; // at the width of the size hint, as far as that goes
};

} // namespace quoddle

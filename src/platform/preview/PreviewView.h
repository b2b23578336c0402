// SPDX-License-Identifier: MIT
// The part of the panel that shows a file. It has a view for each kind and shows one at a time. Main thread only.
#pragma once

#include "platform/preview/PreviewContents.h"

#include <QStackedWidget>

class QPlainTextEdit;
class QTextEdit;

namespace quoddle {

class CardView;
class PagesView;
class PictureView;

class PreviewView : public QStackedWidget {
    Q_OBJECT
public:
    explicit PreviewView(QWidget* parent = nullptr);
    ~PreviewView() override;

    /// Shows a message instead of a file, and releases what was shown before.
    void showMessage(const QString& message);
    void showCard(const FileFacts& facts, const QString& notice = {});
    /// Pictures and pages appear when the first of them is added.
    void showContents(const PreviewContents& contents);
    void addPicture(const QImage& picture, bool isPage);
    /// Scrolls the view. False when the key does not scroll, or all contents are visible.
    bool scroll(int key);

protected:
    void changeEvent(QEvent* event) override;

private:
    void adaptColors();
    /// Takes the document out of its view before it is released.
    void giveUpDocument();
    int placeInText() const;

    QString mPath; // of the contents that were shown last
    std::shared_ptr<QTextDocument> mDocument;
    CardView* mCard;
    QPlainTextEdit* mText;
    QTextEdit* mRichText;
    PictureView* mPicture;
    PagesView* mPages;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The room of the panel in which a file is shown: whatever kind it is, one view at a time.
// Main thread only.
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

    /// Nothing of a file; what was shown before is given up.
    void showMessage(const QString& message);
    void showCard(const FileFacts& facts, const QString& notice = {});
    /// Pictures and pages are shown when the first of them is added.
    void showContents(const PreviewContents& contents);
    void addPicture(const QImage& picture, bool isPage);
    /// Moves what is shown; false when the key is none for that, or everything is to be seen already.
    bool scroll(int key);

protected:
    void changeEvent(QEvent* event) override;

private:
    void adaptColors();
    /// The view must not be left with a document that goes.
    void giveUpDocument();
    int placeInText() const;

    QString mPath; // of the contents that came last
    std::shared_ptr<QTextDocument> mDocument;
    CardView* mCard;
    QPlainTextEdit* mText;
    QTextEdit* mRichText;
    PictureView* mPicture;
    PagesView* mPages;
};

} // namespace quoddle

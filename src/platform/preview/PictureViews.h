// SPDX-License-Identifier: MIT
// Pictures as previews show them: one that is fitted into the room there is, and the pages of a document below one another.
// Main thread only.
#pragma once

#include <QImage>
#include <QScrollArea>

class QVBoxLayout;

namespace quoddle {

/// Fits the picture into itself, never larger than it is.
class PictureView : public QWidget {
    Q_OBJECT
public:
    explicit PictureView(QWidget* parent = nullptr);
    void setPicture(const QImage& picture);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage mPicture;
};

class PagesView : public QScrollArea {
    Q_OBJECT
public:
    explicit PagesView(QWidget* parent = nullptr);
    void addPage(const QImage& page);
    void removeAllPages();

private:
    QVBoxLayout* mPages;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The views for a picture, which is scaled down to the view, and for the pages of a document, one below the other. Main thread only.
#pragma once

#include <QImage>
#include <QScrollArea>

class QVBoxLayout;

namespace quoddle {

/// Scales its picture down to fit, but never up.
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

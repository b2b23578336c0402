// SPDX-License-Identifier: MIT
#include "platform/preview/PictureViews.h"

#include <QPainter>
#include <QVBoxLayout>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

/// A page that is as wide as its view; its height follows from the width.
class PageView final : public QWidget {
    Q_OBJECT
public:
    PageView(const QImage& page, QWidget* parent) : QWidget(parent), mPage(page) {
        QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
        policy.setHeightForWidth(true);
        setSizePolicy(policy);
    }
    int heightForWidth(int width) const override { return std::max(1, width * mPage.height() / mPage.width()); }
    QSize sizeHint() const override { return {200, heightForWidth(200)}; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(rect(), mPage);
    }

private:
    const QImage mPage;
};

} // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
}

void PictureView::setPicture(const QImage& picture) {
    mPicture = picture;
    setAccessibleName(tr("Picture"));
    update();
}

void PictureView::paintEvent(QPaintEvent*) {
    if (mPicture.isNull())
        return;
    const QSizeF natural = QSizeF(mPicture.size()) / devicePixelRatioF();
    QSizeF size = natural.scaled(QSizeF(this->size()), Qt::KeepAspectRatio);
    if (size.width() > natural.width())
        size = natural;
    QRectF place({}, size);
    place.moveCenter(QRectF(rect()).center());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(place, mPicture);
}

PagesView::PagesView(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // a scroll bar that comes and goes would change the width, and so the height, of the pages
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setAccessibleName(tr("Pages"));
    auto* content = new QWidget;
    mPages = new QVBoxLayout(content);
    mPages->setSpacing(10);
    mPages->addStretch(1);
    setWidget(content);
}

void PagesView::addPage(const QImage& page) {
    auto* view = new PageView(page, widget());
    const int last = mPages->count() - 1; // the stretch below the pages
    view->setAccessibleName(tr("Page %1").arg(last + 1));
    mPages->insertWidget(last, view);
}

void PagesView::removeAllPages() {
    while (mPages->count() > 1)
        delete mPages->itemAt(0)->widget();
}

} // namespace quoddle

#include "PictureViews.moc"

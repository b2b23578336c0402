// SPDX-License-Identifier: MIT
#include "platform/preview/PreviewView.h"

#include "platform/appkit/Appearance.h"
#include "platform/appkit/rtf/RichText.h"
#include "platform/preview/CardView.h"
#include "platform/preview/PictureViews.h"

#include <QEvent>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextEdit>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kTextMargin = 12; // points

const QList<std::pair<int, QAbstractSlider::SliderAction>>& scrollKeys() {
    static const QList<std::pair<int, QAbstractSlider::SliderAction>> keys{
        {Qt::Key_Up, QAbstractSlider::SliderSingleStepSub},   {Qt::Key_Down, QAbstractSlider::SliderSingleStepAdd},
        {Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub}, {Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd},
        {Qt::Key_Home, QAbstractSlider::SliderToMinimum},     {Qt::Key_End, QAbstractSlider::SliderToMaximum}};
    return keys;
}

} // namespace

PreviewView::PreviewView(QWidget* parent)
    : QStackedWidget(parent), mCard(new CardView), mText(new QPlainTextEdit), mRichText(new QTextEdit), mPicture(new PictureView),
      mPages(new PagesView) {
    for (QWidget* view : std::initializer_list<QWidget*>{mCard, mText, mRichText, mPicture, mPages})
        addWidget(view);
    mText->setReadOnly(true);
    mText->setFrameShape(QFrame::NoFrame);
    mText->setAccessibleName(tr("Text"));
    mRichText->setReadOnly(true);
    mRichText->setFrameShape(QFrame::NoFrame);
    mRichText->setAccessibleName(tr("Text"));
}

PreviewView::~PreviewView() {
    giveUpDocument();
}

void PreviewView::showMessage(const QString& message) {
    showCard({}, message);
    mText->clear();
    giveUpDocument();
    mPicture->setPicture({});
    mPages->removeAllPages();
}

void PreviewView::giveUpDocument() {
    mRichText->setDocument(nullptr); // QTextEdit makes an empty document of its own
    mDocument.reset();
}

void PreviewView::showCard(const FileFacts& facts, const QString& notice) {
    mCard->setFacts(facts, notice);
    setCurrentWidget(mCard);
}

void PreviewView::showContents(const PreviewContents& contents) {
    const int place = contents.facts.path == mPath ? placeInText() : 0; // a reload of the same file keeps the place in its text
    mPath = contents.facts.path;
    switch (contents.kind) {
    case PreviewKind::Card:
        showCard(contents.facts, contents.notice);
        break;
    case PreviewKind::Text:
        mText->setFont(contents.isSource ? QFontDatabase::systemFont(QFontDatabase::FixedFont) : font());
        mText->setPlainText(contents.text);
        mText->document()->setDocumentMargin(kTextMargin);
        setCurrentWidget(mText);
        mText->verticalScrollBar()->setValue(place);
        break;
    case PreviewKind::RichText:
        mRichText->setDocument(contents.richText.get());
        mDocument = contents.richText; // releases the former document, which the view no longer uses
        mDocument->setDocumentMargin(kTextMargin);
        adaptColors();
        setCurrentWidget(mRichText);
        mRichText->verticalScrollBar()->setValue(place);
        break;
    case PreviewKind::Picture:
    case PreviewKind::Pages:
        mPages->removeAllPages();
        break;
    }
}

void PreviewView::addPicture(const QImage& picture, bool isPage) {
    if (isPage)
        mPages->addPage(picture);
    else
        mPicture->setPicture(picture);
    QWidget* view = isPage ? static_cast<QWidget*>(mPages) : mPicture;
    if (view == currentWidget())
        return;
    mPages->verticalScrollBar()->setValue(0);
    setCurrentWidget(view);
}

int PreviewView::placeInText() const {
    const auto* area = qobject_cast<const QAbstractScrollArea*>(currentWidget());
    return area ? area->verticalScrollBar()->value() : 0;
}

bool PreviewView::scroll(int key) {
    const auto* area = qobject_cast<QAbstractScrollArea*>(currentWidget());
    const auto action = std::find_if(scrollKeys().begin(), scrollKeys().end(), [key](const auto& row) { return row.first == key; });
    if (!area || action == scrollKeys().end() || area->verticalScrollBar()->maximum() == 0)
        return false;
    area->verticalScrollBar()->triggerAction(action->second);
    return true;
}

void PreviewView::adaptColors() {
    if (mDocument)
        adaptRichText(*mDocument, Appearance::isDark(palette()), palette().color(QPalette::Text));
}

void PreviewView::changeEvent(QEvent* event) {
    QStackedWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        adaptColors();
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "window/DescriptionView.h"

#include "platform/appkit/Appearance.h"
#include "platform/appkit/rtf/QuickLayout.h"
#include "platform/appkit/rtf/RichText.h"

#include <cmath>

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QLocale>
#include <QPointer>
#include <QScreen>
#include <QScrollBar>
#include <QShowEvent>
#include <QTextBlock>

namespace quoddle {

namespace {
constexpr int kWidth = 440;
constexpr int kMinimumHeight = 60;
constexpr int kMaximumHeight = 320;
constexpr int kMargin = 8;

/// The height of the document when it is below `most`, otherwise any number from `most` on. Lays out no more of the document than it takes
/// to know.
int heightUpTo(const QTextDocument& document, int most) {
    double height = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        height = document.documentLayout()->blockBoundingRect(block).bottom();
        if (height >= most)
            return static_cast<int>(height);
    }
    return static_cast<int>(std::ceil(document.size().height()));
}

} // namespace

DescriptionView::DescriptionView(QWidget* parent) : QTextBrowser(parent) {
    setOpenExternalLinks(true);
    setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    hide();
}

void DescriptionView::setDescription(const QString& path) {
    auto description = std::make_unique<QTextDocument>();
    description->setDefaultFont(document()->defaultFont());
    description->setDocumentMargin(kMargin);
    description->setUndoRedoEnabled(false);
    const OSStatus status = readRichText(path, *description);
    if (status == memFullErr)
        description->setPlainText(
            tr("The description is not shown: it is larger than %1.").arg(locale().formattedDataSize(kLargestRichTextFile, 0)));
    else if (quicklyLaidOutParagraphs(*description) < description->blockCount())
        description->setPlainText(tr("The description is not shown: it is too long or has too many formats."));
    if (description->isEmpty())
        return;
    adapt(*description); // before the layout, which changing formats would repeat
    description->setTextWidth(kWidth - 2 * frameWidth());
    mTextHeight = heightUpTo(*description, kMaximumHeight);
    const QPointer<QTextDocument> before = document(); // the view deletes its first document itself, later ones are deleted here
    description->setParent(this);
    setDocument(description.release());
    delete before;
    show();
    updateGeometry();
}

void DescriptionView::adapt(QTextDocument& description) const {
    adaptRichText(description, Appearance::isDark(palette()), palette().color(QPalette::Text));
}

// Fits the colours when the view's own palette changes; the palette of the pane around it changes earlier.
void DescriptionView::changeEvent(QEvent* event) {
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        adapt(*document());
}

// Scrolls to the top. The toolkit scrolls to the line with the cursor, to its lower end when the line is taller than the view.
void DescriptionView::showEvent(QShowEvent* event) {
    QTextBrowser::showEvent(event);
    if (!event->spontaneous())
        verticalScrollBar()->setValue(0);
}

QSize DescriptionView::sizeHint() const {
    const int share = screen()->availableGeometry().height() * 2 / 5; // title, menus and buttons need the rest of a small screen
    const int most = std::max(kMinimumHeight, std::min(kMaximumHeight, share));
    return {kWidth, std::clamp(mTextHeight + 2 * frameWidth(), kMinimumHeight, most)};
}

QSize DescriptionView::minimumSizeHint() const {
    return {kWidth / 2, kMinimumHeight};
}

QVariant DescriptionView::loadResource(int, const QUrl&) {
    return {};
}

} // namespace quoddle

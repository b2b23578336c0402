// SPDX-License-Identifier: MIT
#include "window/DescriptionView.h"

#include "platform/appkit/Appearance.h"
#include "platform/appkit/rtf/RichText.h"

#include <cmath>

#include <QEvent>
#include <QLocale>
#include <QPointer>
#include <QScreen>
#include <QScrollBar>
#include <QShowEvent>

namespace quoddle {

namespace {
constexpr int kWidth = 440;
constexpr int kMinimumHeight = 60;
constexpr int kMaximumHeight = 320;
constexpr int kMargin = 8;
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
            tr("The description is not shown: it is larger than %1.").arg(locale().formattedDataSize(kLargestRichText, 0)));
    if (description->isEmpty())
        return;
    const QPointer<QTextDocument> before = document(); // the first one, of the view's own making, goes by itself
    description->setParent(this);
    setDocument(description.release());
    delete before;
    adaptToAppearance();
    show();
    updateGeometry();
}

void DescriptionView::adaptToAppearance() {
    adaptRichText(*document(), Appearance::isDark(palette()), palette().color(QPalette::Text));
}

// The view hears of its own palette: that of the pane around it changes earlier.
void DescriptionView::changeEvent(QEvent* event) {
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        adaptToAppearance();
}

// The toolkit shows the whole height of the line with the cursor, from below when the line is taller than the view.
void DescriptionView::showEvent(QShowEvent* event) {
    QTextBrowser::showEvent(event);
    if (!event->spontaneous())
        verticalScrollBar()->setValue(0);
}

QSize DescriptionView::sizeHint() const {
    const std::unique_ptr<QTextDocument> measured(document()->clone());
    measured->setTextWidth(kWidth - 2 * frameWidth());
    const int height = static_cast<int>(std::ceil(measured->size().height())) + 2 * frameWidth();
    const int share = screen()->availableGeometry().height() * 2 / 5; // title, menus and buttons need the rest of a small screen
    return {kWidth, std::clamp(height, kMinimumHeight, std::max(kMinimumHeight, std::min(kMaximumHeight, share)))};
}

QSize DescriptionView::minimumSizeHint() const {
    return {kWidth / 2, kMinimumHeight};
}

QVariant DescriptionView::loadResource(int, const QUrl&) {
    return {};
}

} // namespace quoddle

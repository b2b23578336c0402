// SPDX-License-Identifier: MIT
#include "window/DescriptionView.h"

#include "platform/appkit/Appearance.h"
#include "platform/appkit/rtf/RichText.h"

#include <cmath>

#include <QEvent>
#include <QScreen>
#include <QScrollBar>
#include <QShowEvent>

namespace quoddle {

namespace {
constexpr int kWidth = 440;
constexpr int kMinimumHeight = 60;
constexpr int kMaximumHeight = 320;
} // namespace

DescriptionView::DescriptionView(QWidget* parent) : QTextBrowser(parent) {
    setOpenExternalLinks(true);
    setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    document()->setDocumentMargin(8);
    hide();
}

void DescriptionView::setDescription(const QString& path) {
    QTextDocument description;
    if (!readRichText(path, description) || description.isEmpty())
        return;
    readRichText(path, *document());
    moveCursor(QTextCursor::Start);
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

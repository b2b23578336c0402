// SPDX-License-Identifier: MIT
#include "platform/appkit/NSAlert.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSWindow.h"
#include "platform/appkit/StockIcons.h"
#include "platform/appkit/WindowLayout.h"
#include "ui_NSAlert.h"

#include <numeric>

#include <QApplication>
#include <QPainter>
#include <QPushButton>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconSize = 48;
constexpr int kTextWidth = 372;

/// The application's icon. A critical alert has a mark on it, or the mark alone when there is no icon.
QPixmap iconOf(NSAlertStyle style, const QWidget& dialog) {
    const double ratio = dialog.devicePixelRatioF();
    QPixmap pixmap(QSize(kIconSize, kIconSize) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QIcon icon = QApplication::windowIcon();
    const QPixmap own = pixmapForIcon(icon, kIconSize, ratio);
    const QSizeF size = own.deviceIndependentSize();
    painter.drawPixmap(QPointF((kIconSize - size.width()) / 2, (kIconSize - size.height()) / 2), own);
    if (style != NSAlertStyle::critical)
        return pixmap;
    const QRectF badge = icon.isNull() ? QRectF(4, 4, 40, 40) : QRectF(kIconSize - 22, kIconSize - 22, 21, 21);
    painter.setPen(QPen(dialog.palette().color(QPalette::Window), 2)); // the border sets the mark off from the icon below
    painter.setBrush(QColor(0xd9, 0x36, 0x3e));
    painter.drawEllipse(badge);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    const double unit = badge.height() / 20;
    const QPointF centre = badge.center();
    painter.drawRoundedRect(QRectF(centre.x() - 1.4 * unit, centre.y() - 6 * unit, 2.8 * unit, 7.6 * unit), 1.4 * unit, 1.4 * unit);
    painter.drawEllipse(QPointF(centre.x(), centre.y() + 4.4 * unit), 1.6 * unit, 1.6 * unit);
    return pixmap;
}

} // namespace

NSAlert::NSAlert() : mUi(std::make_unique<Ui::NSAlert>()), mPanel(std::make_unique<NSPanel>()) {
    mUi->setupUi(mPanel.get());
    QFont bold = mUi->messageView->font();
    bold.setBold(true);
    mUi->messageView->setFont(bold);
    // The size follows from the texts; a scroll area left to itself would take any size.
    mPanel->layout()->setSizeConstraint(QLayout::SetFixedSize);
}

NSAlert::~NSAlert() = default;

void NSAlert::setAlertStyle(NSAlertStyle style) {
    mStyle = style;
}

void NSAlert::setMessageText(const QString& text) {
    mUi->messageView->setText(readableText(text));
    mPanel->setAccessibleName(mUi->messageView->text());
}

void NSAlert::setInformativeText(const QString& text) {
    mUi->informativeView->setText(readableText(text));
    mPanel->setAccessibleDescription(mUi->informativeView->text());
}

void NSAlert::setIcon(const QIcon& icon) {
    mHasOwnIcon = !icon.isNull();
    mUi->iconView->setPixmap(pixmapForIcon(icon, kIconSize, mPanel->devicePixelRatioF()));
}

QPushButton* NSAlert::addButton(const QString& title) {
    auto* button = new QPushButton(mPanel.get());
    button->setObjectName(title);
    setButtonTitle(*button, title);
    const int returnCode = NSAlertFirstButtonReturn + static_cast<int>(mButtons.size());
    QObject::connect(button, &QPushButton::clicked, mPanel.get(), [this, returnCode] { mPanel->done(returnCode); });
    mUi->buttonLayout->insertWidget(1, button); // behind the spring, so that each button stands before the earlier ones
    setKeyEquivalent(*button, mButtons.empty() ? kReturnKeyEquivalent : title == "Cancel"_L1 ? kEscapeKeyEquivalent : QString());
    if (!mButtons.empty())
        QWidget::setTabOrder(mButtons.back(), button);
    mButtons.push_back(button);
    return button;
}

void NSAlert::layout() {
    if (mButtons.empty())
        addButton(u"OK"_s);
    if (!mHasOwnIcon)
        mUi->iconView->setPixmap(iconOf(mStyle, *mPanel));
    const auto withKey = [this](const QString& key) {
        const auto found =
            std::find_if(mButtons.begin(), mButtons.end(), [&key](const QPushButton* button) { return keyEquivalent(*button) == key; });
        return found != mButtons.end() ? *found : nullptr;
    };
    QPushButton* escape = withKey(kEscapeKeyEquivalent);
    mPanel->setCloseButton(escape || mButtons.size() > 1 ? escape : mButtons.front());
    QPushButton* preferred = withKey(kReturnKeyEquivalent);
    (preferred ? static_cast<QWidget*>(preferred) : mPanel.get())->setFocus();

    fitTexts(roomOnScreen(*mPanel));
}

// Texts that are higher than their share of the screen scroll. The message and the informative text each get the room that the other
// leaves.
void NSAlert::fitTexts(const QSize& room) {
    const QMargins margins = mPanel->layout()->contentsMargins();
    const int beside = margins.left() + margins.right();
    const QLabel &message = *mUi->messageView, &informative = *mUi->informativeView;
    const int distances = static_cast<int>(mButtons.size() - 1) * mUi->buttonLayout->spacing();
    fitButtonTitles(mButtons, room.width() - beside - distances);
    const int besideText = kIconSize + mUi->bodyLayout->spacing();
    int wanted = std::max({kTextWidth, widthOfWords(message), widthOfWords(informative)});
    wanted =
        std::max(wanted, distances - besideText + std::accumulate(mButtons.begin(), mButtons.end(), 0, [](int sum, const auto* button) {
                             return sum + button->sizeHint().width();
                         }));
    const int width = std::min(wanted, room.width() - beside - besideText);
    const int atMost = room.height() * 3 / 5;
    const int messageHeight = heightOfText(message, width), informativeHeight = heightOfText(informative, width);
    mUi->messageScrollArea->setVisible(messageHeight > 0);
    mUi->informativeScrollArea->setVisible(informativeHeight > 0);
    const int messageShare = std::min(messageHeight, std::max(atMost / 2, atMost - informativeHeight));
    mUi->messageScrollArea->setFixedSize(width, messageShare);
    mUi->informativeScrollArea->setFixedSize(width, std::min(informativeHeight, atMost - messageShare));
}

void NSAlert::beginSheetModal(NSWindow& window, std::function<void(int returnCode)> completion) {
    layout();
    window.beginSheet(mPanel.get(), std::move(completion));
}

void NSAlert::show(std::function<void()> completion) {
    layout();
    QObject::connect(mPanel.get(), &QDialog::finished, mPanel.get(), [completion = std::move(completion)] { completion(); });
    mPanel->show();
}

int NSAlert::runModal() {
    layout();
    if (mPanel->windowTitle().isEmpty())
        mPanel->setWindowTitle(QGuiApplication::applicationDisplayName());
    return NSApplication::sharedApplication()->runModalForWindow(*mPanel);
}

} // namespace quoddle

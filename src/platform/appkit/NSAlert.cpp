// SPDX-License-Identifier: MIT
#include "platform/appkit/NSAlert.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSWindow.h"
#include "ui_NSAlert.h"

#include <QApplication>
#include <QPainter>
#include <QPushButton>
#include <QScreen>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconSize = 48;
constexpr int kTextWidth = 372;

/// The application's icon; a critical alert marks it, or stands alone where there is none.
QPixmap iconOf(NSAlertStyle style, const QWidget& dialog) {
    const double ratio = dialog.devicePixelRatioF();
    QPixmap pixmap(QSize(kIconSize, kIconSize) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QIcon icon = QApplication::windowIcon();
    icon.paint(&painter, QRect(0, 0, kIconSize, kIconSize));
    if (style != NSAlertStyle::critical)
        return pixmap;
    const QRectF badge = icon.isNull() ? QRectF(4, 4, 40, 40) : QRectF(kIconSize - 22, kIconSize - 22, 21, 21);
    painter.setPen(QPen(dialog.palette().color(QPalette::Window), 2)); // stands off from the icon below
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

int heightOfText(const QLabel& label) {
    return label.text().isEmpty() ? 0 : label.heightForWidth(kTextWidth);
}

} // namespace

NSAlert::NSAlert() : mUi(std::make_unique<Ui::NSAlert>()), mPanel(std::make_unique<NSPanel>()) {
    mUi->setupUi(mPanel.get());
    QFont bold = mUi->messageView->font();
    bold.setBold(true);
    mUi->messageView->setFont(bold);
    // The texts decide about the size; a scroll area left to itself would take any.
    mPanel->layout()->setSizeConstraint(QLayout::SetFixedSize);
    mUi->messageView->setFixedWidth(kTextWidth);
    mUi->informativeScrollArea->setFixedWidth(kTextWidth);
}

NSAlert::~NSAlert() = default;

void NSAlert::setAlertStyle(NSAlertStyle style) {
    mStyle = style;
}

void NSAlert::setMessageText(const QString& text) {
    mUi->messageView->setText(text);
    mPanel->setAccessibleName(text);
}

void NSAlert::setInformativeText(const QString& text) {
    mUi->informativeView->setText(text);
    mPanel->setAccessibleDescription(text);
}

void NSAlert::setIcon(const QIcon& icon) {
    mHasOwnIcon = !icon.isNull();
    mUi->iconView->setPixmap(icon.pixmap(kIconSize));
}

QPushButton* NSAlert::addButton(const QString& title) {
    auto* button = new QPushButton(mPanel.get());
    button->setObjectName(title);
    setButtonTitle(*button, title);
    const int returnCode = NSAlertFirstButtonReturn + static_cast<int>(mButtons.size());
    QObject::connect(button, &QPushButton::clicked, mPanel.get(), [this, returnCode] { mPanel->done(returnCode); });
    mUi->buttonLayout->insertWidget(1, button); // after the spring: each one before those that came earlier
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

    const int atMost = mPanel->screen()->availableGeometry().height() * 2 / 5;
    mUi->messageView->setVisible(!mUi->messageView->text().isEmpty());
    mUi->informativeScrollArea->setVisible(!mUi->informativeView->text().isEmpty());
    mUi->informativeScrollArea->setFixedHeight(std::min(heightOfText(*mUi->informativeView), atMost));
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

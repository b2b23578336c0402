// SPDX-License-Identifier: MIT
#include "platform/appkit/NSAlert.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSWindow.h"
#include "ui_NSAlert.h"

#include <QApplication>
#include <QCloseEvent>
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

/// Escape and the close button press the button that stands for going away; without one they do nothing.
class NSAlert::Dialog final : public QDialog {
public:
    QPushButton* escapeButton = nullptr;

    void reject() override {
        if (escapeButton)
            escapeButton->click();
    }

protected:
    void closeEvent(QCloseEvent* event) override {
        event->ignore();
        reject();
    }
};

NSAlert::NSAlert() : mUi(std::make_unique<Ui::NSAlert>()), mOwnDialog(std::make_unique<Dialog>()), mDialog(mOwnDialog.get()) {
    mUi->setupUi(mDialog);
    mDialog->setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    QFont bold = mUi->messageView->font();
    bold.setBold(true);
    mUi->messageView->setFont(bold);
    // The texts decide about the size; a scroll area left to itself would take any.
    mDialog->layout()->setSizeConstraint(QLayout::SetFixedSize);
    mUi->messageView->setFixedWidth(kTextWidth);
    mUi->informativeScrollArea->setFixedWidth(kTextWidth);
}

NSAlert::~NSAlert() = default;

void NSAlert::setAlertStyle(NSAlertStyle style) {
    mStyle = style;
}

void NSAlert::setMessageText(const QString& text) {
    mUi->messageView->setText(text);
    mDialog->setAccessibleName(text);
}

void NSAlert::setInformativeText(const QString& text) {
    mUi->informativeView->setText(text);
    mDialog->setAccessibleDescription(text);
}

void NSAlert::setIcon(const QIcon& icon) {
    mHasOwnIcon = !icon.isNull();
    mUi->iconView->setPixmap(icon.pixmap(kIconSize));
}

QPushButton* NSAlert::addButton(const QString& title) {
    auto* button = new QPushButton(QString(title).replace(u'&', u"&&"_s), mDialog);
    button->setObjectName(title);
    button->setAccessibleName(title);
    button->setAutoDefault(false);
    const int returnCode = NSAlertFirstButtonReturn + static_cast<int>(mButtons.size());
    QObject::connect(button, &QPushButton::clicked, mDialog, [this, returnCode] { mDialog->done(returnCode); });
    mUi->buttonLayout->insertWidget(1, button); // after the spring: each one before those that came earlier
    if (mButtons.empty())
        button->setDefault(true);
    else
        QWidget::setTabOrder(mButtons.back(), button);
    mButtons.push_back(button);
    return button;
}

void NSAlert::prepare() {
    if (mButtons.empty())
        addButton(u"OK"_s);
    if (!mHasOwnIcon)
        mUi->iconView->setPixmap(iconOf(mStyle, *mDialog));
    const auto cancel =
        std::find_if(mButtons.begin(), mButtons.end(), [](const QPushButton* button) { return button->accessibleName() == "Cancel"_L1; });
    mOwnDialog->escapeButton = cancel != mButtons.end() ? *cancel : mButtons.size() == 1 ? mButtons.front() : nullptr;
    mButtons.front()->setFocus();

    const int atMost = mDialog->screen()->availableGeometry().height() * 2 / 5;
    mUi->messageView->setVisible(!mUi->messageView->text().isEmpty());
    mUi->informativeScrollArea->setVisible(!mUi->informativeView->text().isEmpty());
    mUi->informativeScrollArea->setFixedHeight(std::min(heightOfText(*mUi->informativeView), atMost));
}

void NSAlert::beginSheetModal(NSWindow& window, std::function<void(int returnCode)> completion) {
    prepare();
    window.beginSheet(mDialog, std::move(completion));
}

void NSAlert::show(std::function<void()> completion) {
    prepare();
    QObject::connect(mDialog, &QDialog::finished, mDialog, [completion = std::move(completion)] { completion(); });
    mDialog->show();
}

int NSAlert::runModal() {
    prepare();
    if (mDialog->windowTitle().isEmpty())
        mDialog->setWindowTitle(QGuiApplication::applicationDisplayName());
    return NSApplication::sharedApplication()->runModalForWindow(*mDialog);
}

} // namespace quoddle

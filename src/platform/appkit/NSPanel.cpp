// SPDX-License-Identifier: MIT
#include "platform/appkit/NSPanel.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QVBoxLayout>

namespace quoddle {

namespace {

constexpr auto kKeyProperty = "keyEquivalent";
constexpr auto kTitleProperty = "buttonTitle";

bool isReturn(const QKeyEvent& event) {
    const bool plain = (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    return plain && (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter);
}

bool isCancel(const QKeyEvent& event) {
    return (event.key() == Qt::Key_Escape && event.modifiers() == Qt::NoModifier) ||
           (event.key() == Qt::Key_Period && event.modifiers() == Qt::ControlModifier);
}

} // namespace

void setKeyEquivalent(QPushButton& button, const QString& key) {
    button.setProperty(kKeyProperty, key);
    button.setAutoDefault(false);
    button.setDefault(key == kReturnKeyEquivalent);
}

QString keyEquivalent(const QPushButton& button) {
    return button.property(kKeyProperty).toString();
}

void setButtonTitle(QPushButton& button, const QString& title) {
    button.setProperty(kTitleProperty, title);
    button.setText(QString(title).replace(u'&', QStringLiteral("&&")));
    button.setAccessibleName(title);
}

QString buttonTitle(const QPushButton& button) {
    return button.property(kTitleProperty).toString();
}

NSPanel::NSPanel(QWidget* parent) : QDialog(parent) {
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setFocusPolicy(Qt::ClickFocus); // so that it can have the focus when no button is to
}

NSPanel::~NSPanel() {
    if (mContent) // the view is its controller's
        mContent->view()->setParent(nullptr);
}

void NSPanel::setContentViewController(NSViewController* controller) {
    mContent = controller;
    auto* filling = new QVBoxLayout(this);
    filling->setContentsMargins(0, 0, 0, 0);
    filling->addWidget(controller->view());
}

void NSPanel::setCloseButton(QPushButton* button) {
    mCloseButton = button;
    setWindowFlag(Qt::WindowCloseButtonHint, button != nullptr);
}

void NSPanel::reject() {
    if (mCloseButton)
        mCloseButton->click();
}

void NSPanel::closeEvent(QCloseEvent* event) {
    event->ignore();
    reject();
}

QPushButton* NSPanel::buttonWithKey(const QString& key) const {
    for (auto* button : findChildren<QPushButton*>())
        if (keyEquivalent(*button) == key && button->isVisible())
            return button;
    return nullptr;
}

void NSPanel::keyPressEvent(QKeyEvent* event) {
    if (!isReturn(*event) && !isCancel(*event)) {
        event->ignore(); // not the dialog's own ideas of keys
        return;
    }
    event->accept();
    if (event->isAutoRepeat())
        return;
    QPushButton* pressed = buttonWithKey(isReturn(*event) ? kReturnKeyEquivalent : kEscapeKeyEquivalent);
    if (auto* focused = qobject_cast<QPushButton*>(focusWidget()); focused && isReturn(*event))
        pressed = focused;
    if (pressed)
        pressed->click();
    else if (isCancel(*event))
        reject();
}

} // namespace quoddle

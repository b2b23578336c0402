// SPDX-License-Identifier: MIT
#include "platform/appkit/NSPanel.h"

#include "platform/appkit/KeyRepetition.h"
#include "platform/appkit/WindowLayout.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

namespace quoddle {

namespace {

constexpr auto kKeyProperty = "keyEquivalent";
constexpr auto kTitleProperty = "buttonTitle";
constexpr int kLongestText = 50'000;
constexpr int kLongestTitle = 500;

void showTitle(QPushButton& button, const QString& shown) {
    button.setText(QString(shown).replace(u'&', QStringLiteral("&&")));
}

/// The width that the button needs besides its text.
int widthAroundTitle(const QPushButton& button) {
    return button.sizeHint().width() - button.fontMetrics().size(Qt::TextShowMnemonic, button.text()).width();
}

bool isReturn(const QKeyEvent& event) {
    const bool plain = (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    return plain && (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter);
}

bool isCancel(const QKeyEvent& event) {
    return (event.key() == Qt::Key_Escape && event.modifiers() == Qt::NoModifier) ||
           (event.key() == Qt::Key_Period && event.modifiers() == Qt::ControlModifier);
}

/// Swallows repeated presses: a button that has the focus would take each repetition of a key that is held down for a press.
class RepetitionFilter final : public QObject {
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::KeyPress)
            return false;
        const auto& key = *static_cast<QKeyEvent*>(event);
        return (isReturn(key) || key.key() == Qt::Key_Space) && isKeyRepetition(key);
    }
};

} // namespace

void setKeyEquivalent(QPushButton& button, const QString& key) {
    static RepetitionFilter sFilter;
    button.installEventFilter(&sFilter);
    button.setProperty(kKeyProperty, key);
    button.setAutoDefault(false);
    button.setDefault(key == kReturnKeyEquivalent);
}

QString keyEquivalent(const QPushButton& button) {
    return button.property(kKeyProperty).toString();
}

void setButtonTitle(QPushButton& button, const QString& title) {
    button.setProperty(kTitleProperty, title);
    showTitle(button, titleText(title));
    button.setAccessibleName(titleText(title));
}

QString buttonTitle(const QPushButton& button) {
    return button.property(kTitleProperty).toString();
}

void fitButtonTitles(std::vector<QPushButton*> buttons, int width) {
    // Buttons that need less than an equal share leave the rest of it to wider ones, so the narrow ones come first.
    std::sort(buttons.begin(), buttons.end(), [](const auto* a, const auto* b) { return a->sizeHint().width() < b->sizeHint().width(); });
    auto remaining = static_cast<int>(buttons.size());
    for (QPushButton* button : buttons) {
        const int share = std::max(0, width / remaining--);
        if (button->sizeHint().width() > share) {
            const QString title = titleText(buttonTitle(*button));
            showTitle(*button, button->fontMetrics().elidedText(title, Qt::ElideRight, share - widthAroundTitle(*button)));
            button->setMinimumWidth(std::min(share, button->sizeHint().width()));
            button->setToolTip(toolTipText(title));
        }
        width -= button->sizeHint().width();
    }
}

int widthOfWords(const QLabel& label) {
    return label.text().isEmpty() ? 0 : label.minimumSizeHint().width();
}

int heightOfText(const QLabel& label, int width) {
    if (label.text().isEmpty())
        return 0;
    const int scroller = widthOfWords(label) > width ? label.style()->pixelMetric(QStyle::PM_ScrollBarExtent) : 0;
    return label.heightForWidth(width) + scroller;
}

QString readableText(const QString& text) {
    return text.size() > kLongestText ? text.left(kLongestText) + u'\u2026' : text;
}

QString toolTipText(const QString& text) {
    return QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped());
}

QString titleText(const QString& text) {
    QString title = text.size() > kLongestTitle ? text.left(kLongestTitle) + u'\u2026' : text;
    for (QChar& character : title)
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator || character == QChar::ParagraphSeparator)
            character = u' ';
    return title;
}

NSPanel::NSPanel(QWidget* parent) : QDialog(parent) {
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    watchKeyRepetition();
    setFocusPolicy(Qt::ClickFocus); // the panel takes the focus when no button is to have it
}

NSPanel::~NSPanel() {
    if (mContent) // the controller owns its view
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

void NSPanel::setVisible(bool visible) {
    if (visible && !isVisible()) {
        completeLayout(*this);
        fitToScreen(*this);
    }
    QDialog::setVisible(visible);
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

bool NSPanel::useForTexts(const QKeyEvent& event) {
    if (event.matches(QKeySequence::Copy)) {
        QStringList texts;
        for (const auto* label : findChildren<QLabel*>())
            if (label->isVisible() && label->textInteractionFlags().testFlag(Qt::TextSelectableByMouse) && !label->text().isEmpty())
                texts << label->text();
        QGuiApplication::clipboard()->setText(texts.join(QStringLiteral("\n\n")));
        return true;
    }
    const bool down = event.matches(QKeySequence::MoveToNextPage);
    if (!down && !event.matches(QKeySequence::MoveToPreviousPage))
        return false;
    for (const auto* area : findChildren<QScrollArea*>())
        if (QScrollBar* bar = area->verticalScrollBar(); bar->isVisible())
            bar->triggerAction(down ? QAbstractSlider::SliderPageStepAdd : QAbstractSlider::SliderPageStepSub);
    return true;
}

void NSPanel::keyPressEvent(QKeyEvent* event) {
    if (!isReturn(*event) && !isCancel(*event)) {
        event->setAccepted(useForTexts(*event)); // texts use copying and paging keys; QDialog's own handling of keys is not wanted
        return;
    }
    event->accept();
    if (isKeyRepetition(*event))
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

// SPDX-License-Identifier: MIT
#include "platform/panels/DisplayDialogViewController.h"

#include "platform/appkit/WindowLayout.h"
#include "platform/panels/AnswerField.h"
#include "ui_DisplayDialogViewController.h"

#include <QKeyEvent>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMargin = 20;
constexpr int kAnswerSpacing = 12;
constexpr int kTextWidth = 340;

void setWidth(QSpacerItem& constraint, int points) {
    constraint.changeSize(points, 0, QSizePolicy::Fixed, QSizePolicy::Minimum);
}

void setHeight(QSpacerItem& constraint, int points) {
    constraint.changeSize(0, points, QSizePolicy::Minimum, QSizePolicy::Fixed);
}

} // namespace

DisplayDialogViewController::DisplayDialogViewController(QObject* parent)
    : NSViewController(parent), mUi(std::make_unique<Ui::DisplayDialogViewController>()) {}

DisplayDialogViewController::~DisplayDialogViewController() = default;

QWidget* DisplayDialogViewController::loadView() {
    auto* widget = new QWidget;
    mUi->setupUi(widget);
    mAnswerField = mUi->answerField;
    mSecureAnswerField = mUi->secureAnswerField;
    mLeftButton = mUi->leftButton;
    mMiddleButton = mUi->middleButton;
    mRightButton = mUi->rightButton;
    mIconImageView = mUi->iconImageView;
    buttonToPromptConstraint = mUi->buttonToPromptConstraint;
    middleButtonLeadingConstraint = mUi->middleButtonLeadingConstraint;
    answerLeadingConstraint = mUi->answerLeadingConstraint;
    secureAnswerLeadingConstraint = mUi->secureAnswerLeadingConstraint;
    promptLeadingConstraint = mUi->promptLeadingConstraint;
    leftButtonLeadingConstraint = mUi->leftButtonLeadingConstraint;
    rightButtonLeadingConstraint = mUi->rightButtonLeadingConstraint;
    return widget;
}

void DisplayDialogViewController::viewDidLoad() {
    connect(mLeftButton, &QPushButton::clicked, this, &DisplayDialogViewController::doLeftButton);
    connect(mMiddleButton, &QPushButton::clicked, this, &DisplayDialogViewController::doMiddleButton);
    connect(mRightButton, &QPushButton::clicked, this, &DisplayDialogViewController::doRightButton);
    if (!hasIcon) {
        delete mIconImageView;
        setHeight(*buttonToPromptConstraint, kMargin);
        for (QSpacerItem* leading : {middleButtonLeadingConstraint, answerLeadingConstraint, secureAnswerLeadingConstraint,
                                     promptLeadingConstraint, leftButtonLeadingConstraint, rightButtonLeadingConstraint})
            setWidth(*leading, kMargin);
    }
    if (hasAnswer) {
        hiddenAnswer ? delete mAnswerField : delete mSecureAnswerField;
        (hiddenAnswer ? mUi->secureAnswerLayout : mUi->answerLayout)->setContentsMargins(0, kAnswerSpacing, 0, kMargin);
        setHeight(*buttonToPromptConstraint, 0);
    } else {
        delete mAnswerField;
        delete mSecureAnswerField;
        setHeight(*buttonToPromptConstraint, kMargin);
    }
    // Only the first button of the row keeps its leading distance.
    if (buttonCount < 3) {
        delete mLeftButton;
        setWidth(*leftButtonLeadingConstraint, 0);
    }
    if (buttonCount != 2)
        setWidth(*middleButtonLeadingConstraint, 0);
    if (buttonCount == 1)
        delete mMiddleButton;
    else
        setWidth(*rightButtonLeadingConstraint, 0);
}

void DisplayDialogViewController::setPrompt(const QString& prompt) {
    promptField()->setText(readableText(prompt));
    fitPrompt();
}

void DisplayDialogViewController::limitWidth(int width) {
    mWidthLimit = width;
    fitPrompt();
}

void DisplayDialogViewController::fitPrompt() {
    QScrollArea& area = *mUi->promptScrollArea;
    area.setFixedWidth(std::max(kTextWidth, widthOfWords(*promptField())));
    for (QLayout* layout : view()->findChildren<QLayout*>())
        layout->invalidate(); // inner layouts would be told of the prompt's new width too late
    const int leading = promptLeadingConstraint->sizeHint().width() + (mIconImageView ? mIconImageView->minimumWidth() : 0);
    int viewWidth = view()->sizeHint().width(); // the width of the prompt or that of the buttons, whichever is larger
    if (mWidthLimit > 0 && viewWidth > mWidthLimit) {
        viewWidth = mWidthLimit;
        std::vector<QPushButton*> buttons;
        for (QPushButton* button : {leftButton(), middleButton(), rightButton()})
            if (button)
                buttons.push_back(button);
        fitButtonTitles(buttons, viewWidth - leading - kMargin - static_cast<int>(buttons.size() - 1) * mUi->buttonLayout->spacing());
        view()->setFixedWidth(viewWidth);
    }
    const int textWidth = viewWidth - leading - kMargin;
    const int room = roomOnScreen(*view()).height();
    const int atMost = hasAnswer ? room / 3 : room * 2 / 5; // a long answer takes a quarter
    area.setFixedSize(textWidth, std::min(heightOfText(*promptField(), textWidth), atMost));
}

QWidget* DisplayDialogViewController::fieldInUse() const {
    return mAnswerField ? static_cast<QWidget*>(mAnswerField) : mSecureAnswerField;
}

void DisplayDialogViewController::setAnswer(const QString& answer) {
    if (mAnswerField) {
        mAnswerField->setStringValue(answer);
        mAnswerField->selectAll();
    } else if (mSecureAnswerField) {
        mSecureAnswerField->setText(answer);
        mSecureAnswerField->selectAll();
    }
}

QString DisplayDialogViewController::answer() const {
    return mAnswerField ? mAnswerField->stringValue() : mSecureAnswerField ? mSecureAnswerField->text() : QString();
}

void DisplayDialogViewController::setIcon(const QPixmap& icon) {
    if (mIconImageView)
        mIconImageView->setPixmap(icon);
}

void DisplayDialogViewController::setIsAnswerDelegate(bool isDelegate) {
    QWidget* field = fieldInUse();
    if (!field)
        return;
    field->removeEventFilter(this);
    if (isDelegate)
        field->installEventFilter(this);
}

bool DisplayDialogViewController::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && watched == fieldInUse()) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        const bool isPlain = (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
        return isPlain && control(watched, key.key());
    }
    return NSViewController::eventFilter(watched, event);
}

bool DisplayDialogViewController::control(QObject* control, int key) {
    const QString inserted = key == Qt::Key_Return || key == Qt::Key_Enter ? u"\n"_s : key == Qt::Key_Tab ? u"\t"_s : QString();
    if (inserted.isEmpty())
        return false;
    if (control == mAnswerField)
        mAnswerField->insertPlainText(inserted);
    else
        mSecureAnswerField->insert(inserted);
    return true;
}

void DisplayDialogViewController::takeInitialFocus() {
    QWidget* focused = fieldInUse();
    for (QPushButton* button : {rightButton(), middleButton(), leftButton()})
        if (!focused && button && keyEquivalent(*button) == kReturnKeyEquivalent)
            focused = button;
    (focused ? focused : view()->window())->setFocus();
}

QLabel* DisplayDialogViewController::promptField() const {
    return mUi->promptField;
}

void DisplayDialogViewController::end(int returnCode) {
    if (NSPanel* panel = window())
        panel->done(returnCode);
}

} // namespace quoddle

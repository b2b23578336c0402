// SPDX-License-Identifier: MIT
#include "platform/panels/DisplayDialogPanel.h"

#include "platform/appkit/WindowLayout.h"

#include <QCoreApplication>
#include <QLayout>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kStandardTitles[] = {QT_TRANSLATE_NOOP("DisplayDialogPanel", "Cancel"),
                                           QT_TRANSLATE_NOOP("DisplayDialogPanel", "OK")};

const QStringList& defaultButtons() {
    static const QStringList sButtons = {QString::fromLatin1(kStandardTitles[0]), QString::fromLatin1(kStandardTitles[1])};
    return sButtons;
}

} // namespace

std::optional<CommandError> DisplayDialogParameters::read(const AEDesc& event, DisplayDialogParameters& parameters,
                                                          bool defaultsCanBeNamed) {
    parameters.prompt = textParameter(event, "----"_4cc);
    parameters.title = titleParameter(event);
    ButtonParameters& buttons = parameters.buttons;
    if (auto error = ButtonParameters::read(event, buttons, defaultsCanBeNamed ? defaultButtons() : QStringList()))
        return error;
    if (listParameter(event, "btns"_4cc).count() == 0) {
        buttons.buttons = defaultButtons();
        buttons.areStandard = true;
        buttons.defaultButton = buttons.defaultButton.value_or(1);
        buttons.cancelButton = buttons.cancelButton.value_or(0);
    }
    parameters.defaultAnswer = optionalTextParameter(event, "dtxt"_4cc);
    parameters.hiddenAnswer = booleanParameter(event, "htxt"_4cc);
    return IconParameter::read(event, parameters.icon);
}

DisplayDialogPanel::DisplayDialogPanel(const DisplayDialogParameters& parameters, const QPixmap& icon)
    : mButtons(parameters.buttons.buttons), mAreStandardButtons(parameters.buttons.areStandard) {
    const auto titleOf = [this](std::optional<int> button) { return button ? mButtons[*button] : QString(); };
    mDefaultTitle = titleOf(parameters.buttons.defaultButton);
    mCancelTitle = parameters.buttons.cancelButton ? titleOf(parameters.buttons.cancelButton) : u"Cancel"_s;

    DisplayDialogViewController& controller = mViewController;
    controller.hasIcon = !icon.isNull();
    controller.hiddenAnswer = parameters.hiddenAnswer;
    controller.hasAnswer = parameters.defaultAnswer.has_value();
    controller.buttonCount = static_cast<unsigned>(mButtons.size());
    mWindow.setContentViewController(&controller);
    mWindow.setWindowTitle(parameters.title);
    mWindow.layout()->setSizeConstraint(QLayout::SetFixedSize);
    controller.setIcon(icon);
    placeButtons();
    controller.limitWidth(roomOnScreen(mWindow).width());
    controller.setPrompt(parameters.prompt);
    mWindow.setAccessibleName(controller.promptField()->text());
    if (const auto& answer = parameters.defaultAnswer) {
        controller.setAnswer(*answer);
        controller.setIsAnswerDelegate(answer->contains(u'\r') || answer->contains(u'\n'));
    }
    controller.takeInitialFocus();
}

void DisplayDialogPanel::placeButtons() {
    // The places from right to left, because the last button always stands at the right.
    QPushButton* const places[] = {mViewController.rightButton(), mViewController.middleButton(), mViewController.leftButton()};
    QPushButton* cancel = nullptr;
    for (qsizetype i = 0; i < mButtons.size(); ++i) {
        const QString& title = mButtons[mButtons.size() - 1 - i];
        QPushButton& button = *places[i];
        const bool isDefault = !mDefaultTitle.isNull() && title == mDefaultTitle;
        setButtonTitle(button,
                       mAreStandardButtons ? QCoreApplication::translate("DisplayDialogPanel", title.toLatin1().constData()) : title);
        setKeyEquivalent(button, isDefault ? kReturnKeyEquivalent : title == mCancelTitle ? kEscapeKeyEquivalent : QString());
        if (title == mCancelTitle)
            cancel = &button;
    }
    mWindow.setCloseButton(cancel);
}

qsizetype DisplayDialogPanel::indexOfButton(int returnCode) const {
    const qsizetype index = mButtons.size() - 1 + returnCode - DisplayDialogViewController::kRightButtonReturn;
    return index < mButtons.size() ? std::max<qsizetype>(index, -1) : -1;
}

QString DisplayDialogPanel::buttonReturned(int returnCode) const {
    const qsizetype index = indexOfButton(returnCode);
    return index >= 0 ? mButtons[index] : QString();
}

bool DisplayDialogPanel::isCancel(int returnCode) const {
    const qsizetype index = indexOfButton(returnCode);
    return index >= 0 && mButtons[index] == mCancelTitle;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/panels/DisplayAlertPanel.h"

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

NSAlertStyle styleOf(const AEDesc* given) {
    const FourCharCode code = given ? given->asType().value_or(given->asEnum().value_or(0)) : 0;
    return code == "criT"_4cc ? NSAlertStyle::critical : code == "warN"_4cc ? NSAlertStyle::warning : NSAlertStyle::informational;
}

} // namespace

std::optional<CommandError> DisplayAlertParameters::read(const AEDesc& event, DisplayAlertParameters& parameters, bool defaultsCanBeNamed) {
    parameters.alertText = textParameter(event, "----"_4cc);
    parameters.message = textParameter(event, "mesS"_4cc);
    parameters.title = titleParameter(event);
    parameters.style = styleOf(event.find("as A"_4cc));
    return ButtonParameters::read(event, parameters.buttons, defaultsCanBeNamed ? QStringList{u"OK"_s} : QStringList());
}

DisplayAlertPanel::DisplayAlertPanel(const DisplayAlertParameters& parameters) {
    mAlert.setAlertStyle(parameters.style);
    mAlert.setMessageText(parameters.alertText);
    mAlert.setInformativeText(parameters.message);
    mAlert.window().setWindowTitle(parameters.title);
    const ButtonParameters& given = parameters.buttons;
    for (auto title = given.buttons.rbegin(); title != given.buttons.rend(); ++title)
        mAlert.addButton(*title);
    const auto positionOf = [&given](int button) { return static_cast<int>(given.buttons.size()) - 1 - button; };
    if (given.cancelButton) {
        mCancelPosition = positionOf(*given.cancelButton);
        giveKey(kEscapeKeyEquivalent, *mCancelPosition);
    }
    if (given.defaultButton)
        giveKey(kReturnKeyEquivalent, positionOf(*given.defaultButton));
}

void DisplayAlertPanel::giveKey(const QString& key, int position) {
    for (QPushButton* button : mAlert.buttons())
        if (keyEquivalent(*button) == key)
            setKeyEquivalent(*button, {});
    setKeyEquivalent(*mAlert.buttons()[position], key);
}

QString DisplayAlertPanel::buttonReturned(int returnCode) const {
    const int position = returnCode - NSAlertFirstButtonReturn;
    const auto& buttons = mAlert.buttons();
    return position >= 0 && position < static_cast<int>(buttons.size()) ? buttonTitle(*buttons[position]) : QString();
}

bool DisplayAlertPanel::isCancel(int returnCode) const {
    return mCancelPosition && returnCode - NSAlertFirstButtonReturn == *mCancelPosition;
}

} // namespace quoddle

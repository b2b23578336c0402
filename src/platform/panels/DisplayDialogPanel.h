// SPDX-License-Identifier: MIT
// The dialog of "display dialog", ready to be shown as a sheet or a window of its own, and what its return codes mean.
// One decision: the caller decides how the dialog is shown and what the answer is used for.
// Main thread only.
#pragma once

#include "platform/panels/CommandParameters.h"
#include "platform/panels/DisplayDialogViewController.h"

namespace quoddle {

struct DisplayDialogParameters {
    QString prompt;
    QString title;
    ButtonParameters buttons;
    std::optional<QString> defaultAnswer; ///< nullopt: there is no field for an answer
    bool hiddenAnswer = false;
    IconParameter icon;

    /// An event without buttons gets "Cancel" and "OK". With `defaultsCanBeNamed` it may name one of the two as the default or the cancel
    /// button.
    static std::optional<CommandError> read(const AEDesc& event, DisplayDialogParameters& parameters, bool defaultsCanBeNamed);
};

class DisplayDialogPanel {
public:
    /// A null icon means that the dialog shows none.
    DisplayDialogPanel(const DisplayDialogParameters& parameters, const QPixmap& icon);

    NSPanel& window() { return mWindow; }
    DisplayDialogViewController& viewController() { return mViewController; }

    /// The title of the button with the return code; empty for a code that no button has.
    QString buttonReturned(int returnCode) const;
    /// Whether the button with the return code has the title of the cancel button.
    bool isCancel(int returnCode) const;
    /// The text in the field; empty without a field.
    QString textReturned() const { return mViewController.answer(); }

private:
    void placeButtons();
    /// The index of the button with the return code in the list of buttons; -1 for a code that no button has.
    qsizetype indexOfButton(int returnCode) const;

    const QStringList mButtons;
    const bool mAreStandardButtons;
    QString mDefaultTitle; // null: no button is the default
    QString mCancelTitle;
    DisplayDialogViewController mViewController;
    NSPanel mWindow;
};

} // namespace quoddle

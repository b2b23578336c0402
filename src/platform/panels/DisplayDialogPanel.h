// SPDX-License-Identifier: MIT
// The dialog of "display dialog", ready to be shown as a sheet or a window of its own, and what its return codes mean.
// One decision: how it is shown, and what becomes of the answer, is the caller's.
// Main thread only.
#pragma once

#include "platform/panels/CommandParameters.h"
#include "platform/panels/DisplayDialogViewController.h"

namespace quoddle {

struct DisplayDialogParameters {
    QString prompt;
    QString title;
    ButtonParameters buttons;
    std::optional<QString> defaultAnswer; ///< nothing: there is no field for an answer
    bool hiddenAnswer = false;
    IconParameter icon;

    /// "Cancel" and "OK" when no button is given. `defaultsCanBeNamed`: then the default and the cancel button may be named among those
    /// two.
    static std::optional<CommandError> read(const AEDesc& event, DisplayDialogParameters& parameters, bool defaultsCanBeNamed);
};

class DisplayDialogPanel {
public:
    /// A null icon: none.
    DisplayDialogPanel(const DisplayDialogParameters& parameters, const QPixmap& icon);

    NSPanel& window() { return mWindow; }
    DisplayDialogViewController& viewController() { return mViewController; }

    /// The title of the button with the return code; empty for a code that no button has.
    QString buttonReturned(int returnCode) const;
    /// That button has the title of the one that cancels.
    bool isCancel(int returnCode) const;
    /// Empty without a field.
    QString textReturned() const { return mViewController.answer(); }

private:
    void placeButtons();
    /// -1 for a code that no button has.
    qsizetype indexOfButton(int returnCode) const;

    const QStringList mButtons;
    QString mDefaultTitle; // null: none
    QString mCancelTitle;
    DisplayDialogViewController mViewController;
    NSPanel mWindow;
};

} // namespace quoddle

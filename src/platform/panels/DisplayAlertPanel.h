// SPDX-License-Identifier: MIT
// The alert of "display alert", ready to be shown as a sheet or a window of its own, and what its return codes mean.
// One decision: its buttons count from the right, so the last one given is the alert's first; what is the default and what cancels goes by
// place, not by title.
// Main thread only.
#pragma once

#include "platform/appkit/NSAlert.h"
#include "platform/panels/CommandParameters.h"

namespace quoddle {

struct DisplayAlertParameters {
    QString alertText;
    QString message;
    QString title;
    NSAlertStyle style = NSAlertStyle::informational;
    ButtonParameters buttons; ///< none given: the alert's own

    /// `defaultsCanBeNamed`: without buttons, the alert's own "OK" may be named as the default or the cancel button.
    static std::optional<CommandError> read(const AEDesc& event, DisplayAlertParameters& parameters, bool defaultsCanBeNamed);
};

class DisplayAlertPanel {
public:
    explicit DisplayAlertPanel(const DisplayAlertParameters& parameters);

    NSAlert& alert() { return mAlert; }
    /// The title of the button with the return code; empty for a code that no button has.
    QString buttonReturned(int returnCode) const;
    bool isCancel(int returnCode) const;

private:
    void giveKey(const QString& key, int position);

    NSAlert mAlert;
    std::optional<int> mCancelPosition; // among the alert's buttons
};

} // namespace quoddle

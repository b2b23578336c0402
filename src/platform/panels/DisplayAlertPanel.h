// SPDX-License-Identifier: MIT
// The alert of "display alert", ready to be shown as a sheet or a window of its own, and what its return codes mean.
// One decision: its buttons count from the right, so the last button given is the alert's first. The default and the cancel button are
// known by their places, not by their titles.
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
    ButtonParameters buttons; ///< empty: the alert has its own button

    /// With `defaultsCanBeNamed` an event without buttons may name the alert's own "OK" as the default or the cancel button.
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

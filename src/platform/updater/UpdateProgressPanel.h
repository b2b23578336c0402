// SPDX-License-Identifier: MIT
// A panel with the updater's current activity, its progress, and a button to cancel it. Main thread only.
#pragma once

#include "platform/appkit/NSPanel.h"

namespace quoddle {

class ElidedLabel;
class ProgressBar;

class UpdateProgressPanel : public NSPanel {
    Q_OBJECT
public:
    /// Finishes with 0 when the user cancels.
    UpdateProgressPanel(const QString& title, const QString& activity);

    /// `total` is 0 when it is unknown.
    void setProgress(qint64 done, qint64 total);

private:
    ElidedLabel* mDetail;
    ProgressBar* mBar;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// A panel with the updater's present work, how far it has come, and a button to end it.
// Main thread only.
#pragma once

#include "platform/appkit/NSPanel.h"

namespace quoddle {

class ElidedLabel;
class ProgressBar;

class UpdateProgressPanel : public NSPanel {
    Q_OBJECT
public:
    /// Finishes with 0 when it is cancelled.
    UpdateProgressPanel(const QString& title, const QString& activity);

    /// `total` 0: nobody knows.
    void setProgress(qint64 done, qint64 total);

private:
    ElidedLabel* mDetail;
    ProgressBar* mBar;
};

} // namespace quoddle

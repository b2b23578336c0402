// SPDX-License-Identifier: MIT
// The progress pane: what the running script reports, as a bar and two lines, and a button to stop it.
// One decision: it shows snapshots; how they come about and what Stop leads to is the runtime's.
// Main thread only.
#pragma once

#include "platform/appkit/NSViewController.h"

#include <QPushButton>

namespace Ui {
class ProgressViewController;
}

namespace quoddle {

class ElidedLabel;
class ProgressBar;
struct NSNotification;

class ProgressViewController : public NSViewController {
    Q_OBJECT
public:
    explicit ProgressViewController(QObject* parent = nullptr);
    ~ProgressViewController() override;

    /// Ready for a run: Stop enabled, the bar moving, both lines empty.
    void resetStarted();
    /// Stop disabled, the bar still.
    void resetStopped();
    bool stopButtonHidden() const;
    void setStopButtonHidden(bool hidden);
    bool stopButtonEnabled() const;
    void setStopButtonEnabled(bool enabled);
    /// The Stop button's action.
    void stop();

    // Outlets; the view must have been loaded.
    QPushButton* stopButton() const;
    ProgressBar* progressView() const;
    ElidedLabel* messageView() const;
    ElidedLabel* message2View() const;

protected:
    QWidget* loadView() override;
    void viewDidLoad() override;

private:
    void _progressDidChange(const NSNotification& notification);
    void connectStopKeys();

    std::unique_ptr<Ui::ProgressViewController> mUi;
};

} // namespace quoddle

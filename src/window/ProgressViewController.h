// SPDX-License-Identifier: MIT
// The progress pane: the running script's report as a bar and two lines, and a button to stop the script.
// One decision: it shows snapshots; the runtime makes them and decides what Stop leads to.
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

    /// Prepares the pane for a run: Stop enabled, the bar moving, both lines empty.
    void resetStarted();
    /// Ends the display of a run: Stop disabled, the bar still.
    void resetStopped();
    bool stopButtonHidden() const;
    void setStopButtonHidden(bool hidden);
    bool stopButtonEnabled() const;
    void setStopButtonEnabled(bool enabled);
    /// Stops the script; the action of the Stop button.
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

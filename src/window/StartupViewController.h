// SPDX-License-Identifier: MIT
// The startup pane: shown before the script runs, with the applet's description, a Run and a Quit button.
// Main thread only.
#pragma once

#include "platform/appkit/NSViewController.h"
#include "platform/foundation/NSBundle.h"

#include <QTimer>

class QPushButton;

namespace Ui {
class StartupViewController;
}

namespace quoddle {

class StartupViewController : public NSViewController {
    Q_OBJECT
public:
    explicit StartupViewController(QObject* parent = nullptr);
    ~StartupViewController() override;

    std::shared_ptr<NSBundle> mainBundle() const { return mMainBundle; }
    /// Fills the pane with what the bundle says. To be called each time before the pane appears, because a window is fitted to its content
    /// before it is shown.
    void setMainBundle(std::shared_ptr<NSBundle> mainBundle);

    /// The Run button; the view must have been loaded.
    QPushButton* runButton() const;

    /// Shows the bundle's description, if it has one.
    void setupDescription();
    void runScript();
    void quitApplet();

protected:
    QWidget* loadView() override;
    void viewDidLoad() override;
    void viewDidAppear() override;

private:
    /// Enables the Run button when there is something to run and nothing runs.
    void updateRunButton();
    void scriptActivityChanged();

    bool mHasSomethingToRun = false;
    QTimer mPatience; // runs while the script may still come to rest before the button has to be disabled
    std::unique_ptr<Ui::StartupViewController> mUi;
    std::shared_ptr<NSBundle> mMainBundle;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The startup pane: shown before the script runs, with the applet's description, a Run and a Quit button.
// Main thread only.
#pragma once

#include "platform/appkit/NSViewController.h"
#include "platform/foundation/NSBundle.h"

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

    /// Set before the pane is shown.
    std::shared_ptr<NSBundle> mainBundle() const { return mMainBundle; }
    void setMainBundle(std::shared_ptr<NSBundle> mainBundle) { mMainBundle = std::move(mainBundle); }

    /// The view must have been loaded.
    QPushButton* runButton() const;

    /// Shows the bundle's description, if it has one; each time the pane appears.
    void setupDescription();
    void runScript();
    void quitApplet();

protected:
    QWidget* loadView() override;
    void viewDidLoad() override;
    void viewDidAppear() override;

private:
    std::unique_ptr<Ui::StartupViewController> mUi;
    std::shared_ptr<NSBundle> mMainBundle;
};

} // namespace quoddle

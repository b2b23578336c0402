// SPDX-License-Identifier: MIT
// The window of an applet without open handler: a startup pane and a progress pane in one place, of which one is shown while there is
// something to see.
// Main thread only.
#pragma once

#include "platform/appkit/NSTabViewController.h"
#include "window/BaseWindowController.h"

namespace quoddle {

class ProgressViewController;
class StartupViewController;

class AppletWindowController final : public BaseWindowController {
public:
    AppletWindowController();
    ~AppletWindowController() override;

    /// The controller of the panes: tab 0 is the startup pane, tab 1 the progress pane.
    NSTabViewController& mainViewController() const { return *mMainViewController; }
    ProgressViewController& progressViewController() const override;

    void showProgressViewController() override;
    void showIdleViewController() override;
    void showStartupViewController() override;
    void showLastViewController() override;

protected:
    std::unique_ptr<NSWindow> loadWindow() override;
    /// Besides loading, registers this controller as the runtime's window controller.
    void windowDidLoad() override;

private:
    StartupViewController& startupViewController() const;
    void selectTabWithoutTransition(int index);

    std::unique_ptr<NSTabViewController> mMainViewController;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The window of an applet with an open handler. It has two waiting panes, the drop zone and the file search, between which a control in the
// toolbar switches; the progress pane while the script runs; and the startup pane at a launch with a description. The mode chosen last is
// remembered from one launch to the next.
// Main thread only.
#pragma once

#include "platform/appkit/NSTabViewController.h"
#include "platform/appkit/NSToolbar.h"
#include "window/BaseWindowController.h"

namespace quoddle {

class NSSegmentedControl;
class ProgressViewController;
class SpotlightViewController;
class StartupViewController;

inline const QString ToolbarTitleItemIdentifier = QStringLiteral("ToolbarTitleItemIdentifier");
inline const QString ToolbarModeItemIdentifier = QStringLiteral("ToolbarModeItemIdentifier");

class DropletWindowController final : public BaseWindowController, private NSToolbarDelegate {
public:
    DropletWindowController();
    ~DropletWindowController() override;

    /// The running applet's window when it is one of this kind; null when it is not, or not there yet.
    static DropletWindowController* current();

    /// The controller of the panes: tab 0 is the drop pane, 1 the search, 2 progress, 3 startup.
    NSTabViewController& mainViewController() const { return *mMainViewController; }
    ProgressViewController& progressViewController() const override;
    SpotlightViewController& searchViewController() const;
    /// The control in the toolbar; null before the window is loaded.
    NSSegmentedControl* modeControl() const { return mModeControl; }
    /// The mode chosen last: 0 drop, 1 search.
    unsigned lastSelectedTabIndex() const { return mLastSelectedTabIndex; }

    void showProgressViewController() override;
    void showIdleViewController() override { showLastViewController(); }
    void showStartupViewController() override;
    void showLastViewController() override;
    /// Shows the drop zone for one drop, without changing the remembered mode.
    void showDropFilesViewController();
    /// Tells whether files that were dropped are still being judged. The drop zone, which shows the progress of that, is then the waiting
    /// pane.
    void setFinishingDrop(bool finishing);
    /// Changes and remembers the mode; the action of the mode control.
    void _modeChanged(int segment);

protected:
    std::unique_ptr<NSWindow> loadWindow() override;
    /// Besides loading, registers this controller as the runtime's window controller.
    void windowDidLoad() override;

private:
    QStringList toolbarDefaultItemIdentifiers(const NSToolbar& toolbar) const override;
    QStringList toolbarAllowedItemIdentifiers(const NSToolbar& toolbar) const override;
    NSToolbarItem toolbarItemForItemIdentifier(const NSToolbar& toolbar, const QString& identifier) override;
    void toolbarWillAddItem(const NSToolbarItem& item) override;

    StartupViewController& startupViewController() const;
    void selectTabWithoutTransition(int index);
    void selectMode(unsigned tab);
    /// Enables the control while a waiting pane is shown and no drop is being judged.
    void updateModeControl();

    std::unique_ptr<NSTabViewController> mMainViewController;
    NSSegmentedControl* mModeControl = nullptr; // in the toolbar, which lives as long as the window
    unsigned mLastSelectedTabIndex = 0;
    bool mIsFinishingDrop = false;
};

} // namespace quoddle

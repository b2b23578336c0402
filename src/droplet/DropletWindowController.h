// SPDX-License-Identifier: MIT
// The window of an applet with an open handler: two waiting panes, the drop zone and the file search, between which a control in the
// toolbar switches; the progress pane while the script runs; the startup pane at a launch with a description. The mode chosen last is
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

    /// The window of the running applet; null when it has another one, or none yet.
    static DropletWindowController* current();

    /// The panes: tab 0 drop, 1 search, 2 progress, 3 startup.
    NSTabViewController& mainViewController() const { return *mMainViewController; }
    ProgressViewController& progressViewController() const;
    SpotlightViewController& searchViewController() const;
    /// Null before the window is loaded.
    NSSegmentedControl* modeControl() const { return mModeControl; }
    /// The mode chosen last: 0 drop, 1 search.
    unsigned lastSelectedTabIndex() const { return mLastSelectedTabIndex; }

    void showProgressViewController() override;
    void showIdleViewController() override { showLastViewController(); }
    void showStartupViewController() override;
    void showLastViewController() override;
    /// For one drop: the mode stays what it is.
    void showDropFilesViewController();
    /// Files that were dropped are still being judged: the drop zone, which shows how far that is, stays the waiting pane.
    void setFinishingDrop(bool finishing);
    bool stopButtonHidden() const override;
    void setStopButtonHidden(bool hidden) override;
    bool stopButtonEnabled() const override;
    void setStopButtonEnabled(bool enabled) override;
    /// The mode control's action.
    void _modeChanged(int segment);

protected:
    std::unique_ptr<NSWindow> loadWindow() override;
    /// Registers itself as the runtime's window controller.
    void windowDidLoad() override;

private:
    QStringList toolbarDefaultItemIdentifiers(const NSToolbar& toolbar) const override;
    QStringList toolbarAllowedItemIdentifiers(const NSToolbar& toolbar) const override;
    NSToolbarItem toolbarItemForItemIdentifier(const NSToolbar& toolbar, const QString& identifier) override;
    void toolbarWillAddItem(const NSToolbarItem& item) override;

    StartupViewController& startupViewController() const;
    void selectTabWithoutTransition(int index);
    void selectMode(unsigned tab);
    /// The mode can be changed where a waiting pane is shown.
    void updateModeControl();

    std::unique_ptr<NSTabViewController> mMainViewController;
    NSSegmentedControl* mModeControl = nullptr; // in the toolbar, which lives as long as the window
    unsigned mLastSelectedTabIndex = 0;
    bool mIsFinishingDrop = false;
};

} // namespace quoddle

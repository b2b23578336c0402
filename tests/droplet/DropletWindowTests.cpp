// SPDX-License-Identifier: MIT
#include "droplet/DropletWindowController.h"

#include "droplet/SpotlightViewController.h"
#include "platform/appkit/NSSegmentedControl.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/foundation/QtPrinters.h"
#include "window/ProgressViewController.h"
#include "window/Shell.h"

namespace quoddle {

using namespace Qt::StringLiterals;
using Shell = test::ShellWith<DropletWindowController>;

namespace {

constexpr auto kInfo = "KVBStayOpen = YES; KVBShowStartupScreen = NO;";

int tab(const DropletWindowController& controller) {
    return controller.mainViewController().selectedTabViewItemIndex();
}

} // namespace

TEST(DropletWindow, BeginsInTheModeChosenLast) {
    const struct {
        QVariant stored;
        int mode;
    } rows[] = {{{}, 0}, {0, 0}, {1, 1}, {7, 0}, {-1, 0}, {u"nonsense"_s, 0}};
    for (const auto& row : rows) {
        row.stored.isValid() ? standardUserDefaults().setValue(u"mode"_s, row.stored) : standardUserDefaults().remove(u"mode"_s);
        Shell shell(kInfo, "open");
        DropletWindowController& controller = shell.setUp();
        EXPECT_EQ(tab(controller), row.mode) << testing::PrintToString(row.stored.toString());
        EXPECT_EQ(controller.modeControl()->selectedSegment(), row.mode) << testing::PrintToString(row.stored.toString());
        EXPECT_FALSE(controller.mainViewController().isInTransition());
        EXPECT_EQ(shell.delegate->mainWindowController().get(), &controller);
        EXPECT_EQ(controller.window()->windowTitle(), u"A & B"_s);
    }
    standardUserDefaults().remove(u"mode"_s);
}

TEST(DropletWindow, SwitchesBetweenItsPanes) {
    Shell shell(kInfo, "open");
    DropletWindowController& controller = shell.setUp();
    NSSegmentedControl& mode = *controller.modeControl();

    controller._modeChanged(1);
    EXPECT_EQ(tab(controller), 1);
    EXPECT_EQ(standardUserDefaults().value(u"mode"_s).toInt(), 1);

    // The drop zone appears for one drop, and the mode stays the same.
    controller.showDropFilesViewController();
    EXPECT_EQ(tab(controller), 0);
    EXPECT_EQ(mode.selectedSegment(), 0);
    EXPECT_EQ(controller.lastSelectedTabIndex(), 1u);
    EXPECT_EQ(standardUserDefaults().value(u"mode"_s).toInt(), 1);

    controller.window()->hide();
    controller.showProgressViewController();
    EXPECT_EQ(tab(controller), 2);
    EXPECT_TRUE(controller.isWindowVisible());
    EXPECT_FALSE(controller.mainViewController().isInTransition()) << "a window that appears does not animate its content";
    EXPECT_FALSE(mode.isEnabled());
    EXPECT_TRUE(controller.stopButtonEnabled());
    EXPECT_FALSE(controller.stopButtonHidden());

    controller.showLastViewController();
    EXPECT_EQ(tab(controller), 1);
    EXPECT_EQ(mode.selectedSegment(), 1);
    EXPECT_TRUE(mode.isEnabled());

    controller.showStartupViewController();
    EXPECT_EQ(tab(controller), 3);
    EXPECT_FALSE(mode.isEnabled());
    standardUserDefaults().remove(u"mode"_s);
}

} // namespace quoddle

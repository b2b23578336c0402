// SPDX-License-Identifier: MIT
#include "window/AppletWindowController.h"

#include "platform/appkit/ProgressBar.h"
#include "runtime/AppDelegate.h"
#include "window/ProgressViewController.h"
#include "window/StartupViewController.h"

#include <QLayout>
#include <QMenuBar>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {
constexpr int kStartupTab = 0;
constexpr int kProgressTab = 1;
using Options = NSTabViewController::TransitionOptions;
} // namespace

AppletWindowController::AppletWindowController() : mMainViewController(std::make_unique<NSTabViewController>()) {
    mMainViewController->addTabViewController(std::make_unique<StartupViewController>());
    mMainViewController->addTabViewController(std::make_unique<ProgressViewController>());
    mMainViewController->setTransitionOptions(Options::crossfade);
}

AppletWindowController::~AppletWindowController() = default;

std::unique_ptr<NSWindow> AppletWindowController::loadWindow() {
    auto window = BaseWindowController::loadWindow();
    window->setContentViewController(mMainViewController.get());
    window->layout()->setSizeConstraint(QLayout::SetFixedSize); // more room would be of no use to the contents
    window->setWindowFlag(Qt::WindowMaximizeButtonHint, false);
    // The menu bar is visible in a window that waits for its user, and hidden in one that only reports.
    window->menuBar()->setVisible(AppDelegate::instance()->showStartupScreen());
    return window;
}

void AppletWindowController::windowDidLoad() {
    BaseWindowController::windowDidLoad();
    AppDelegate::instance()->setMainWindowController(shared_from_this());
    mMainViewController->reserveSpaceForTab(kProgressTab);
    progressViewController().resetStarted();
    window()->setWindowTitle(AppDelegate::instance()->mainBundle()->name());
}

ProgressViewController& AppletWindowController::progressViewController() const {
    return static_cast<ProgressViewController&>(*mMainViewController->tabViewController(kProgressTab));
}

StartupViewController& AppletWindowController::startupViewController() const {
    return static_cast<StartupViewController&>(*mMainViewController->tabViewController(kStartupTab));
}

void AppletWindowController::selectTabWithoutTransition(int index) {
    mMainViewController->setTransitionOptions(Options::none);
    mMainViewController->setSelectedTabViewItemIndex(index);
    mMainViewController->setTransitionOptions(Options::crossfade);
}

void AppletWindowController::showProgressViewController() {
    if (window()->isVisible()) {
        mMainViewController->setSelectedTabViewItemIndex(kProgressTab);
    } else { // a window that appears does not animate its content
        selectTabWithoutTransition(kProgressTab);
        appear();
    }
    progressViewController().progressView()->startAnimation();
    progressViewController().setStopButtonEnabled(true);
    progressViewController().setStopButtonHidden(false);
}

void AppletWindowController::showIdleViewController() {
    showProgressViewController();
    progressViewController().resetStopped();
    progressViewController().setStopButtonHidden(true);
}

void AppletWindowController::showStartupViewController() {
    if (!window()->isVisible() || mMainViewController->selectedTabViewItemIndex() != kStartupTab)
        startupViewController().setMainBundle(mainBundle());
    selectTabWithoutTransition(kStartupTab);
    appear();
}

void AppletWindowController::showLastViewController() {
    if (AppDelegate::instance()->showStartupScreen())
        showStartupViewController();
    else
        window()->orderOut();
}

} // namespace quoddle

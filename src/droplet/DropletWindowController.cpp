// SPDX-License-Identifier: MIT
#include "droplet/DropletWindowController.h"

#include "droplet/DropFilesViewController.h"
#include "droplet/NSImage+Additions.h"
#include "droplet/SpotlightViewController.h"
#include "platform/appkit/ElidedLabel.h"
#include "platform/appkit/NSSegmentedControl.h"
#include "platform/appkit/ProgressBar.h"
#include "platform/foundation/NSUserDefaults.h"
#include "runtime/AppDelegate.h"
#include "window/ProgressViewController.h"
#include "window/StartupViewController.h"

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kDropTab = 0;
constexpr int kSearchTab = 1;
constexpr int kProgressTab = 2;
constexpr int kStartupTab = 3;
constexpr QSize kFirstSize(480, 400);
const QString kModeKey = u"mode"_s;
using Options = NSTabViewController::TransitionOptions;

/// A title that asks for the width of its text and becomes narrower where there is no room, so that the mode control beside it stays
/// visible with any name.
class TitleLabel final : public ElidedLabel {
public:
    TitleLabel() { setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed); }

    QSize sizeHint() const override {
        const QMargins margins = contentsMargins();
        return {fontMetrics().horizontalAdvance(text().simplified()) + margins.left() + margins.right(), ElidedLabel::sizeHint().height()};
    }
};

} // namespace

DropletWindowController::DropletWindowController() : mMainViewController(std::make_unique<NSTabViewController>()) {
    mMainViewController->addTabViewController(std::make_unique<DropFilesViewController>());
    mMainViewController->addTabViewController(std::make_unique<SpotlightViewController>());
    mMainViewController->addTabViewController(std::make_unique<ProgressViewController>());
    mMainViewController->addTabViewController(std::make_unique<StartupViewController>());
}

DropletWindowController::~DropletWindowController() = default;

DropletWindowController* DropletWindowController::current() {
    const AppDelegate* delegate = AppDelegate::instance();
    return delegate ? dynamic_cast<DropletWindowController*>(delegate->mainWindowController().get()) : nullptr;
}

std::unique_ptr<NSWindow> DropletWindowController::loadWindow() {
    auto window = BaseWindowController::loadWindow();
    window->setContentViewController(mMainViewController.get());
    window->resize(kFirstSize);
    return window;
}

void DropletWindowController::windowDidLoad() {
    BaseWindowController::windowDidLoad();
    AppDelegate* delegate = AppDelegate::instance();
    delegate->setMainWindowController(shared_from_this());
    // The settings file may hold any value; all but the search mode count as the drop mode.
    const unsigned stored = standardUserDefaults().value(kModeKey).toUInt();
    mLastSelectedTabIndex = stored == kSearchTab ? kSearchTab : kDropTab;
    selectTabWithoutTransition(static_cast<int>(mLastSelectedTabIndex));
    window()->setWindowTitle(delegate->mainBundle()->name());
    window()->addToolBar(new NSToolbar(u"toolbar"_s, *this, window()));
    progressViewController().resetStarted();
}

// --- The toolbar

QStringList DropletWindowController::toolbarDefaultItemIdentifiers(const NSToolbar&) const {
    return {ToolbarTitleItemIdentifier, NSToolbarFlexibleSpaceItemIdentifier, ToolbarModeItemIdentifier};
}

QStringList DropletWindowController::toolbarAllowedItemIdentifiers(const NSToolbar&) const {
    return {NSToolbarFlexibleSpaceItemIdentifier, ToolbarTitleItemIdentifier, ToolbarModeItemIdentifier};
}

NSToolbarItem DropletWindowController::toolbarItemForItemIdentifier(const NSToolbar&, const QString& identifier) {
    if (identifier == ToolbarTitleItemIdentifier) {
        auto* title = new TitleLabel;
        title->setContentsMargins(8, 0, 8, 0);
        title->setText(window()->windowTitle());
        return {identifier, title};
    }
    if (identifier == ToolbarModeItemIdentifier) {
        auto* control = new NSSegmentedControl(2);
        control->setAccessibleName(QObject::tr("Mode"));
        return {identifier, control};
    }
    return {};
}

void DropletWindowController::toolbarWillAddItem(const NSToolbarItem& item) {
    if (item.identifier != ToolbarModeItemIdentifier)
        return;
    mModeControl = static_cast<NSSegmentedControl*>(item.view);
    mModeControl->setSegment(kDropTab, templateIconNamed(u"DropTemplate"_s), QObject::tr("Drop files"));
    mModeControl->setSegment(kSearchTab, templateIconNamed(u"SpotlightTemplate"_s), QObject::tr("Find files"));
    mModeControl->setSelectedSegment(mMainViewController->selectedTabViewItemIndex());
    QObject::connect(mModeControl, &NSSegmentedControl::action, mModeControl, [this](int segment) { _modeChanged(segment); });
}

void DropletWindowController::_modeChanged(int segment) {
    mLastSelectedTabIndex = static_cast<unsigned>(segment);
    selectMode(mLastSelectedTabIndex);
    standardUserDefaults().setValue(kModeKey, mLastSelectedTabIndex);
}

// --- The panes

ProgressViewController& DropletWindowController::progressViewController() const {
    return static_cast<ProgressViewController&>(*mMainViewController->tabViewController(kProgressTab));
}

SpotlightViewController& DropletWindowController::searchViewController() const {
    return static_cast<SpotlightViewController&>(*mMainViewController->tabViewController(kSearchTab));
}

StartupViewController& DropletWindowController::startupViewController() const {
    return static_cast<StartupViewController&>(*mMainViewController->tabViewController(kStartupTab));
}

void DropletWindowController::selectTabWithoutTransition(int index) {
    mMainViewController->setTransitionOptions(Options::none);
    mMainViewController->setSelectedTabViewItemIndex(index);
    mMainViewController->setTransitionOptions(Options::crossfade);
}

void DropletWindowController::selectMode(unsigned tab) {
    mMainViewController->setSelectedTabViewItemIndex(static_cast<int>(tab));
    mModeControl->setSelectedSegment(static_cast<int>(tab));
    updateModeControl();
    if (tab == kSearchTab)
        searchViewController().takeFocus();
}

void DropletWindowController::updateModeControl() {
    mModeControl->setEnabled(!mIsFinishingDrop && mMainViewController->selectedTabViewItemIndex() <= kSearchTab);
}

void DropletWindowController::showProgressViewController() {
    if (window()->isVisible()) {
        mMainViewController->setSelectedTabViewItemIndex(kProgressTab);
    } else { // a window that appears does not animate its content
        selectTabWithoutTransition(kProgressTab);
        appear();
    }
    updateModeControl();
    progressViewController().progressView()->startAnimation();
    progressViewController().setStopButtonEnabled(true);
    progressViewController().setStopButtonHidden(false);
}

void DropletWindowController::showStartupViewController() {
    startupViewController().setMainBundle(mainBundle());
    selectTabWithoutTransition(kStartupTab);
    updateModeControl();
    appear();
}

void DropletWindowController::showDropFilesViewController() {
    selectMode(kDropTab);
}

void DropletWindowController::showLastViewController() {
    selectMode(mIsFinishingDrop ? kDropTab : mLastSelectedTabIndex);
    progressViewController().resetStopped();
}

void DropletWindowController::setFinishingDrop(bool finishing) {
    mIsFinishingDrop = finishing;
    updateModeControl();
}

} // namespace quoddle

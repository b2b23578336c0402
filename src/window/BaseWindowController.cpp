// SPDX-License-Identifier: MIT
#include "window/BaseWindowController.h"

#include "platform/appkit/MenuBar.h"
#include "platform/appkit/NSApplication.h"
#include "runtime/AppDelegate.h"
#include "window/ProgressViewController.h"

namespace quoddle {

std::unique_ptr<NSWindow> BaseWindowController::loadWindow() {
    auto window = std::make_unique<NSWindow>();
    if (const auto menu = NSApplication::sharedApplication()->mainMenu())
        new MenuBar(menu, *window);
    return window;
}

void BaseWindowController::appear() {
    if (!window()->isVisible() && AppDelegate::instance()->takeAwaitedWindow())
        showWindow();
    else
        window()->appear();
}

void BaseWindowController::windowDidLoad() {
    window()->setFrameAutosaveName(QStringLiteral("applet"));
}

bool BaseWindowController::stopButtonHidden() const {
    return progressViewController().stopButtonHidden();
}

void BaseWindowController::setStopButtonHidden(bool hidden) {
    progressViewController().setStopButtonHidden(hidden);
}

bool BaseWindowController::stopButtonEnabled() const {
    return progressViewController().stopButtonEnabled();
}

void BaseWindowController::setStopButtonEnabled(bool enabled) {
    progressViewController().setStopButtonEnabled(enabled);
}

} // namespace quoddle

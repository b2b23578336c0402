// SPDX-License-Identifier: MIT
// The base of the applet's window controllers: the runtime's WindowController on a window of the application framework, with the menu bar
// and a remembered place.
// Main thread only.
#pragma once

#include "platform/appkit/NSWindowController.h"
#include "runtime/WindowController.h"

namespace quoddle {

class ProgressViewController;

class BaseWindowController : public WindowController, public NSWindowController {
public:
    bool isWindowVisible() const override { return window()->isVisible(); }
    void showWindow() override { window()->makeKeyAndOrderFront(); }
    const void* windowObject() const override { return window(); }
    /// The progress pane, whose Stop button the following are about.
    virtual ProgressViewController& progressViewController() const = 0;
    bool stopButtonHidden() const final;
    void setStopButtonHidden(bool hidden) final;
    bool stopButtonEnabled() const final;
    void setStopButtonEnabled(bool enabled) final;

protected:
    /// Shows a window that is hidden; it comes to the front only when the user waits for it.
    void appear();
    std::unique_ptr<NSWindow> loadWindow() override;
    /// Gives the window the autosave name "applet". Windows are never cascaded here, so there is no cascading to turn off.
    void windowDidLoad() override;
};

} // namespace quoddle

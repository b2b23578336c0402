// SPDX-License-Identifier: MIT
// WindowController: all that the runtime knows of the applet's window. Which kind of window it has is decided where the runtime is put
// together; implementations stand above it.
// Main thread only.
#pragma once

#include "platform/foundation/NSBundle.h"

#include <memory>

namespace quoddle {

class WindowController : public std::enable_shared_from_this<WindowController> {
public:
    virtual ~WindowController() = default;

    /// The applet's bundle; given right after creation.
    std::shared_ptr<NSBundle> mainBundle() const { return mMainBundle; }
    void setMainBundle(std::shared_ptr<NSBundle> mainBundle) { mMainBundle = std::move(mainBundle); }

    virtual void showProgressViewController() {}
    /// The progress pane while nothing runs: without Stop, and nothing in it moves.
    virtual void showIdleViewController() {}
    virtual void showStartupViewController() {}
    /// The pane that stands between runs, or no window when there is none.
    virtual void showLastViewController() {}
    virtual bool stopButtonHidden() const { return false; }
    virtual void setStopButtonHidden(bool hidden) { (void)hidden; }
    virtual bool stopButtonEnabled() const { return false; }
    virtual void setStopButtonEnabled(bool enabled) { (void)enabled; }

    virtual bool isWindowVisible() const = 0;
    virtual void showWindow() = 0;
    /// The object with which the window's notifications are posted.
    virtual const void* windowObject() const = 0;

private:
    std::shared_ptr<NSBundle> mMainBundle;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// WindowController: everything that the runtime knows of the applet's window. The kind of window is chosen where the runtime is put
// together; implementations belong to the layers above.
// Main thread only.
#pragma once

#include "platform/foundation/NSBundle.h"

#include <memory>

namespace quoddle {

class WindowController : public std::enable_shared_from_this<WindowController> {
public:
    virtual ~WindowController() = default;

    /// The applet's bundle, which is given right after creation.
    std::shared_ptr<NSBundle> mainBundle() const { return mMainBundle; }
    void setMainBundle(std::shared_ptr<NSBundle> mainBundle) { mMainBundle = std::move(mainBundle); }

    virtual void showProgressViewController() {}
    /// Shows the progress pane while nothing runs: without Stop, and without motion.
    virtual void showIdleViewController() {}
    virtual void showStartupViewController() {}
    /// Shows the pane that stands between runs; hides the window when there is none.
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

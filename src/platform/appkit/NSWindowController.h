// SPDX-License-Identifier: MIT
// The owner of one window: it loads the window on first use. Main thread only.
#pragma once

#include "platform/appkit/NSWindow.h"

#include <memory>

namespace quoddle {

class NSWindowController {
public:
    virtual ~NSWindowController() = default;

    /// Loaded on first use: loadWindow(), then windowDidLoad(). Lives as long as the controller.
    NSWindow* window() {
        if (!mWindow) {
            mWindow = loadWindow();
            windowDidLoad();
        }
        return mWindow.get();
    }
    bool isWindowLoaded() const { return mWindow != nullptr; }
    void showWindow() { window()->makeKeyAndOrderFront(); }

protected:
    virtual std::unique_ptr<NSWindow> loadWindow() = 0;
    virtual void windowDidLoad() {}

private:
    std::unique_ptr<NSWindow> mWindow;
};

} // namespace quoddle

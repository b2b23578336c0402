// SPDX-License-Identifier: MIT
// The owner of one window. Whoever makes a controller loads its window, for that is when it announces itself.
// Main thread only.
#pragma once

#include "platform/appkit/NSWindow.h"

#include <memory>

namespace quoddle {

class NSWindowController {
public:
    virtual ~NSWindowController() = default;

    /// Once: makes the window, then calls windowDidLoad().
    void load() {
        mWindow = loadWindow();
        windowDidLoad();
    }
    /// Null before load(). Lives as long as the controller.
    NSWindow* window() const { return mWindow.get(); }

protected:
    virtual std::unique_ptr<NSWindow> loadWindow() = 0;
    virtual void windowDidLoad() {}

private:
    std::unique_ptr<NSWindow> mWindow;
};

} // namespace quoddle

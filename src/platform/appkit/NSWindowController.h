// SPDX-License-Identifier: MIT
// The owner of one window. Code that makes a controller also loads its window, because controllers announce themselves when it is loaded.
// Main thread only.
#pragma once

#include "platform/appkit/NSWindow.h"

#include <memory>

namespace quoddle {

class NSWindowController {
public:
    virtual ~NSWindowController() = default;

    /// Makes the window, then calls windowDidLoad(). To be called once.
    void load() {
        mWindow = loadWindow();
        windowDidLoad();
    }
    /// The window, which lives as long as the controller; null before load().
    NSWindow* window() const { return mWindow.get(); }

protected:
    virtual std::unique_ptr<NSWindow> loadWindow() = 0;
    virtual void windowDidLoad() {}

private:
    std::unique_ptr<NSWindow> mWindow;
};

} // namespace quoddle

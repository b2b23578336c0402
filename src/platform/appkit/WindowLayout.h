// SPDX-License-Identifier: MIT
// The size of a window that is about to appear. One decision: everything that has a say in the size has had it before the window is shown.
// A layout that changes its mind while the window manager puts its frame around the window asks for a place that is no longer the window's
// own, and the window jumps into a corner or creeps by the height of a title bar.
// Main thread only.
#pragma once

class QWidget;

namespace quoddle {

/// Gives what is in the window its fonts and style, and lays it out from the inside to the outside. For a window that is not visible.
void completeLayout(QWidget& window);

/// Makes a window that is about to appear no larger than its screen, title bar included, so that its buttons are within reach.
void fitToScreen(QWidget& window);

} // namespace quoddle

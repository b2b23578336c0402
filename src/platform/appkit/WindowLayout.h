// SPDX-License-Identifier: MIT
// The size of a window that is about to appear.
// One decision: everything that influences the size is settled before the window is shown. A layout that changes its mind while the window
// manager puts its frame around the window asks for a place that is no longer the window's own, and the window jumps into a corner or
// creeps by the height of a title bar.
// Main thread only.
#pragma once

class QWidget;

namespace quoddle {

/// Gives the contents of a window that is not visible their fonts and style, and lays them out from the inside to the outside.
void completeLayout(QWidget& window);

/// Makes a window that is about to appear no larger than its screen, title bar included, so that its buttons are within reach.
void fitToScreen(QWidget& window);

} // namespace quoddle

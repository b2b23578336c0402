// SPDX-License-Identifier: MIT
// The size of a window that is about to appear.
// One decision: everything that influences the size is settled before the window is shown. A layout that changes its mind while the window
// manager puts its frame around the window asks for a place that is no longer the window's own, and the window jumps into a corner or
// creeps by the height of a title bar.
// Main thread only.
#pragma once

class QSize;
class QWidget;

namespace quoddle {

/// Gives the contents of a window that is not visible their fonts and style, and lays them out from the inside to the outside.
void completeLayout(QWidget& window);

/// The largest size, in points, of a window whose frame is wholly on its screen.
QSize roomOnScreen(const QWidget& window);

/// Makes a window that is about to appear no larger than its screen, frame included, so that its buttons are within reach. Contents that
/// ask for more have to do with less, and a window whose size its layout fixes can be resized from then on when it does not fit.
void fitToScreen(QWidget& window);

} // namespace quoddle

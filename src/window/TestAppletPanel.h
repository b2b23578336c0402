// SPDX-License-Identifier: MIT
// The panel of the test mode, in which an applet is chosen to be worked on.
#pragma once

#include <QString>

namespace quoddle {

/// Waits for the choice; the absolute path of an applet, empty when the user cancelled. Main thread.
QString chooseTestApplet();

} // namespace quoddle

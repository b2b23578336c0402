// SPDX-License-Identifier: MIT
// The panels of the applet itself: the one that says which applet it is, and, in the test mode, the one that asks for an applet to work on.
// Main thread only.
#pragma once

#include <QString>

namespace quoddle {

/// Shows the panel that says which applet this is, or brings it to the front. Does not wait.
void showAboutPanel();

/// Asks for an applet and waits; answers its absolute path, empty when the user cancelled.
QString chooseTestApplet();

} // namespace quoddle

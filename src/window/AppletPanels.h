// SPDX-License-Identifier: MIT
// The panels of the applet itself: the one that says which applet it is, and, in the test mode, the one in which an applet is chosen to be
// worked on. Main thread only.
#pragma once

#include <QString>

namespace quoddle {

/// Shows the panel, or brings it to the front. Does not wait.
void showAboutPanel();

/// Waits for the choice; the absolute path of an applet, empty when the user cancelled.
QString chooseTestApplet();

} // namespace quoddle

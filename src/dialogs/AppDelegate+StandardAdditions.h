// SPDX-License-Identifier: MIT
// The delegate's dialog commands: the interactive commands that the applet answers itself, in its own window, in place of the scripting
// addition's.
// Main thread only.
#pragma once

namespace quoddle {

class AppDelegate;

/// Registers one handler for each command with the shared Apple event manager.
void installOSAXEventHandlers(AppDelegate& delegate);

} // namespace quoddle

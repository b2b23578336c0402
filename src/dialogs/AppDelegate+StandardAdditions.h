// SPDX-License-Identifier: MIT
// The interactive commands that the applet answers itself, in its own window, in place of the scripting addition.
// Main thread only.
#pragma once

namespace quoddle {

class AppDelegate;

/// Registers one handler for each command with the shared Apple event manager. Removes them and closes the dialogs when the application
/// terminates; cancels the dialogs when the session ends.
void installOSAXEventHandlers(AppDelegate& delegate);

} // namespace quoddle

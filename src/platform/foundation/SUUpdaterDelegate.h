// SPDX-License-Identifier: MIT
// The questions and notices of an updater to the application that it updates.
//
// A script may answer, which can take any time, and the user can go on meanwhile. So the updater may be asked for something else while it
// waits for an answer.
// Main thread.
#pragma once

namespace quoddle {

class SUUpdaterDelegate {
public:
    virtual ~SUUpdaterDelegate() = default;

    virtual bool updaterMayCheckForUpdates() { return true; }
    /// Whether the user is asked for permission before the updater starts to check for updates by itself.
    virtual bool updaterShouldPromptForPermissionToCheckForUpdates() { return true; }
    /// True while the application shows an error that ends it, such as one of its own answers. The updater then shows nothing.
    virtual bool updaterIsOutOfTurn() { return false; }
    virtual void updaterWillInstallUpdate() {}
    virtual void updaterWillRelaunchApplication() {}

    /// The number of calls, of any caller, that the script is busy with.
    virtual int updaterCallDepth() { return 0; }
    /// Ends the call that began at this depth; its answer is not waited for any more.
    virtual void updaterStopsCall(int depth) { static_cast<void>(depth); }
};

} // namespace quoddle

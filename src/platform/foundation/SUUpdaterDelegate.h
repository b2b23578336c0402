// SPDX-License-Identifier: MIT
// The questions and notices of an updater to the application that it keeps up to date.
// Main thread.
#pragma once

namespace quoddle {

class SUUpdaterDelegate {
public:
    virtual ~SUUpdaterDelegate() = default;

    virtual bool updaterMayCheckForUpdates() { return true; }
    /// Whether the user is asked before updates are looked for without being asked for.
    virtual bool updaterShouldPromptForPermissionToCheckForUpdates() { return true; }
    /// The application shows an error that ends it, such as one of its own answers: the updater says nothing more.
    virtual bool updaterIsOutOfTurn() { return false; }
    virtual void updaterWillInstallUpdate() {}
    virtual void updaterWillRelaunchApplication() {}
};

} // namespace quoddle

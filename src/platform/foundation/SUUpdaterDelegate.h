// SPDX-License-Identifier: MIT
// The questions and notices of an updater to the application that it keeps up to date.
//
// The application may take its time for an answer, as long as its script takes, and lets the user go on meanwhile: an updater is prepared
// to be asked for something else before it has the answer.
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

    /// How many questions and notices, of whomever, the script is busy with.
    virtual int updaterCallDepth() { return 0; }
    /// The question or notice that came at this depth of calls is to end: its answer is not waited for any more.
    virtual void updaterStopsCall(int depth) { static_cast<void>(depth); }
};

} // namespace quoddle

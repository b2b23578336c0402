// SPDX-License-Identifier: MIT
// Which application an address means: one that runs, or one that could be launched.
//
// Applications that do not run are found by path, among those that have run here before (a list in the user's data folder), and by name in
// the folders where applets are kept: $QUODDLE_APPLET_PATH (separated by colons), ~/Applications, /usr/local/share/quoddle/applets,
// /usr/share/quoddle/applets.
#pragma once

#include "platform/ae/AEDesc.h"
#include "platform/ae/transport/AERunningApplications.h"
#include "platform/base/Result.h"

namespace quoddle {

/// With processID 0 when it does not run but its bundle was found at `path`. -600 when there is no such application; -1716 for a kind of
/// address that means nothing here. "aprl" holds a name, an absolute path or a file URL; "bund" an identifier. Any thread.
Result<AERunningApplication, OSStatus> AEFindApplication(const AEDesc& address);

/// The one whose bundle is at the path (links followed), when it runs.
std::optional<AERunningApplication> AEFindRunningApplicationAtPath(const std::string& path);

/// Puts an application into the list of those that have run here, for the next look-up. Failures are of no consequence.
void AERememberApplication(const AERunningApplication& application);

/// Absolute and without links, for comparing; the path itself when nothing is there.
std::string AECanonicalPath(const std::string& path);

} // namespace quoddle

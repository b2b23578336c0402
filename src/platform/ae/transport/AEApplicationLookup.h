// SPDX-License-Identifier: MIT
// Finds the application that an address means, running or launchable.
//
// Applications that do not run are found by path, among those that have run here before (a list in the user's data folder), and by name in
// the folders for applets: $QUODDLE_APPLET_PATH (separated by colons), ~/Applications, /usr/local/share/quoddle/applets,
// /usr/share/quoddle/applets.
#pragma once

#include "platform/ae/AEDesc.h"
#include "platform/ae/transport/AERunningApplications.h"
#include "platform/base/Result.h"

namespace quoddle {

/// The processID is 0 when the application does not run but its bundle was found at `path`. -600 when there is no such application; -1716
/// for a kind of address that is not supported. "aprl" holds a name, an absolute path or a file URL; "bund" an identifier. Any thread.
Result<AERunningApplication, OSStatus> AEFindApplication(const AEDesc& address);

/// The running application whose bundle is at the path (links are followed).
std::optional<AERunningApplication> AEFindRunningApplicationAtPath(const std::string& path);

/// Adds an application to the list of those that have run here, for later look-ups. Failures are ignored.
void AERememberApplication(const AERunningApplication& application);

/// The path made absolute and free of links, for comparisons; the path itself when nothing is there.
std::string AECanonicalPath(const std::string& path);

} // namespace quoddle

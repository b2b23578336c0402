// SPDX-License-Identifier: MIT
// Keeps two processes from installing and removing applets at the same time.
#pragma once

#include "platform/base/FileDescriptor.h"

namespace quoddle::tool {

/// While it lives, other processes of this user that make one wait. Where the user's data folder cannot be written there is no lock, and
/// nothing to keep apart.
class InstallationLock {
public:
    InstallationLock();

private:
    FileDescriptor mFolder; ///< the folder "quoddle" in the user's data folder; closing releases the lock
};

} // namespace quoddle::tool

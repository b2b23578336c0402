// SPDX-License-Identifier: MIT
// The folder in which the processes of one user find each other: $XDG_RUNTIME_DIR/quoddle. It is /tmp/quoddle-UID where the login sets no
// such variable (cron, containers) or it is another user's (after becoming root). The folder must belong to the user and be closed to all
// others, or it is not used.
#pragma once

#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"

#include <string>

namespace quoddle {

/// Makes the folder when there is none. -5000 when others have access to it; otherwise a file status. Any thread.
Result<std::string, OSStatus> AERuntimeDirectory();
/// A message for the user: what is wrong with the folder, and how to mend it.
std::string AERuntimeDirectoryAdvice(OSStatus status);

} // namespace quoddle

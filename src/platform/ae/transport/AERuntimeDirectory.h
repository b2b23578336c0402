// SPDX-License-Identifier: MIT
// The folder in which the processes of one user find each other: $XDG_RUNTIME_DIR/quoddle, or /tmp/quoddle-UID where a login gives none
// (cron, containers) or that of another user (root, who was one before). It belongs to the user and nobody else may enter it; a folder that
// does not look like that is not used.
#pragma once

#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"

#include <string>

namespace quoddle {

/// Made when it is not there. -5000 when it is not the user's alone; otherwise a file status. Any thread.
Result<std::string, OSStatus> AERuntimeDirectory();
/// For people: what is wrong with it, and what to do.
std::string AERuntimeDirectoryAdvice(OSStatus status);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Unix stream sockets by folder and name. The length of a path does not matter: the folder is reached through its descriptor.
#pragma once

#include "platform/base/FileDescriptor.h"
#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"

#include <optional>
#include <string>
#include <sys/types.h>

namespace quoddle {

/// Non-blocking, for the owner only. What stood there before is replaced.
Result<FileDescriptor, OSStatus> listenAt(const std::string& directory, const std::string& name, int backlog);
/// Non-blocking and connected. -600 when nobody listens there, or somebody else than this user.
Result<FileDescriptor, OSStatus> connectTo(const std::string& directory, const std::string& name);
/// The process at the other end; nothing when it is another user's.
std::optional<pid_t> sameUserPeer(int socket);

} // namespace quoddle

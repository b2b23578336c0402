// SPDX-License-Identifier: MIT
// Unix stream sockets by folder and name. Long paths are no problem, because the folder is addressed by its descriptor.
#pragma once

#include "platform/base/FileDescriptor.h"
#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"

#include <optional>
#include <string>
#include <sys/types.h>

namespace quoddle {

/// A non-blocking socket for the owner only. Replaces an existing file of that name.
Result<FileDescriptor, OSStatus> listenAt(const std::string& directory, const std::string& name, int backlog);
/// A non-blocking, connected socket. -600 when nobody listens there, or another user does.
Result<FileDescriptor, OSStatus> connectTo(const std::string& directory, const std::string& name);
/// The process at the other end; nullopt when it belongs to another user.
std::optional<pid_t> sameUserPeer(int socket);

} // namespace quoddle

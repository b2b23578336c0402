// SPDX-License-Identifier: MIT
// Unix stream sockets by folder and name. The length of a path does not matter: the folder is reached through its descriptor.
#pragma once

#include "platform/base/FileDescriptor.h"
#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"

#include <string>

namespace quoddle {

/// Non-blocking, for the owner only. What stood there before is replaced.
Result<FileDescriptor, OSStatus> listenAt(const std::string& directory, const std::string& name, int backlog);
/// Non-blocking and connected. -600 when nobody listens there, or somebody else than this user.
Result<FileDescriptor, OSStatus> connectTo(const std::string& directory, const std::string& name);
bool isPeerSameUser(int socket);

} // namespace quoddle

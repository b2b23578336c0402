// SPDX-License-Identifier: MIT
#include "InstallationLock.h"

#include "platform/base/UserFolders.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>

namespace quoddle::tool {

namespace {

FileDescriptor lockedFolder(const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    while (opened.isOpen() && ::flock(opened.number(), LOCK_EX) != 0 && errno == EINTR)
        continue;
    return opened;
}

} // namespace

InstallationLock::InstallationLock() : mFolder(lockedFolder(dataFolder() + "/quoddle")) {}

} // namespace quoddle::tool

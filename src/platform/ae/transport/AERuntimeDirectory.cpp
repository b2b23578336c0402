// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AERuntimeDirectory.h"

#include "platform/base/File.h"

#include <cerrno>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace quoddle {

namespace {

constexpr mode_t kOwnerOnly = 0700;
constexpr OSStatus kAccessDenied = -5000;

bool belongsToUserAlone(const struct stat& status) {
    return S_ISDIR(status.st_mode) && status.st_uid == geteuid() && (status.st_mode & 077) == 0;
}

/// Whether the folder belongs to this user, so that we may make our folder in it. A program that root runs may have inherited another
/// user's folder in its environment; that user could then not use a folder that root has made there.
bool isOurs(const char* path) {
    struct stat status = {};
    return path && *path == '/' && stat(path, &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
           (status.st_mode & 022) == 0;
}

std::string path() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    return isOurs(runtime) ? std::string(runtime) + "/quoddle" : "/tmp/quoddle-" + std::to_string(geteuid());
}

} // namespace

Result<std::string, OSStatus> AERuntimeDirectory() {
    const std::string directory = path();
    if (mkdir(directory.c_str(), kOwnerOnly) != 0 && errno != EEXIST)
        return Failure{statusFromErrno(errno)};
    struct stat status = {};
    if (lstat(directory.c_str(), &status) != 0)
        return Failure{statusFromErrno(errno)};
    if (!belongsToUserAlone(status))
        return Failure{kAccessDenied};
    return directory;
}

std::string AERuntimeDirectoryAdvice(OSStatus status) {
    if (status == kAccessDenied)
        return "Applets find each other in the folder " + path() +
               ", which is not a folder that belongs to you alone. Remove it, or give it to yourself and take its rights from others "
               "(chmod 700).";
    return "Applets find each other in the folder " + path() + ", which can’t be made (" + std::to_string(status) + ").";
}

} // namespace quoddle

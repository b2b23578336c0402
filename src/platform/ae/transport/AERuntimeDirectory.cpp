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

} // namespace

Result<std::string, OSStatus> AERuntimeDirectory() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    const std::string path = runtime && *runtime == '/' ? std::string(runtime) + "/quoddle" : "/tmp/quoddle-" + std::to_string(geteuid());
    if (mkdir(path.c_str(), kOwnerOnly) != 0 && errno != EEXIST)
        return Failure{statusFromErrno(errno)};
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0)
        return Failure{statusFromErrno(errno)};
    if (!belongsToUserAlone(status))
        return Failure{kAccessDenied};
    return path;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/base/File.h"

#include "platform/base/FileDescriptor.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quoddle {

namespace {

constexpr OSStatus kIOError = -36;

// Asking for it changes it for a moment, in which other threads must not make files: asked before there are any.
const mode_t kMask = [] {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return mask;
}();

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace

OSStatus statusFromErrno(int error) {
    switch (error) {
    case 0:
        return noErr;
    case ENOENT:
        return fnfErr;
    case ENOTDIR:
        return -120;
    case EACCES:
    case EPERM:
        return -54;
    case EROFS:
        return -44;
    case ENOSPC:
    case EDQUOT:
        return -34;
    case EEXIST:
        return -48;
    case EMFILE:
    case ENFILE:
        return -42;
    case ENOMEM:
        return memFullErr;
    case EISDIR:
        return paramErr;
    default:
        return kIOError;
    }
}

Result<std::string, OSStatus> readFile(const std::string& path, std::size_t maximumSize) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)); // a pipe without a writer must not stop us
    if (!file.isOpen())
        return Failure{statusFromErrno(errno)};
    struct stat info {};
    if (::fstat(file.number(), &info) != 0)
        return Failure{statusFromErrno(errno)};
    if (!S_ISREG(info.st_mode))
        return Failure{paramErr};
    if (static_cast<std::size_t>(info.st_size) > maximumSize)
        return Failure{memFullErr};
    std::string bytes;
    bytes.resize(static_cast<std::size_t>(info.st_size));
    std::size_t filled = 0;
    while (true) {
        if (filled == bytes.size())
            bytes.resize(bytes.size() + 4096); // it may have grown
        const ssize_t count = ::read(file.number(), bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return Failure{statusFromErrno(errno)};
        if (count == 0)
            break;
        filled += static_cast<std::size_t>(count);
        if (filled > maximumSize)
            return Failure{memFullErr};
    }
    bytes.resize(filled);
    return bytes;
}

OSStatus writeFile(const std::string& path, std::string_view bytes) {
    std::string beside = path + ".XXXXXX";
    const FileDescriptor file(::mkstemp(beside.data()));
    if (!file.isOpen())
        return errno == ENOENT ? -120 : statusFromErrno(errno);
    struct stat existing {};
    const mode_t mode = ::stat(path.c_str(), &existing) == 0 ? existing.st_mode & 07777 : 0666 & ~kMask;
    const bool written = writeAll(file.number(), bytes) && ::fchmod(file.number(), mode) == 0 && ::fsync(file.number()) == 0 &&
                         ::rename(beside.c_str(), path.c_str()) == 0;
    if (written)
        return noErr;
    const OSStatus status = statusFromErrno(errno);
    ::unlink(beside.c_str());
    return status;
}

} // namespace quoddle

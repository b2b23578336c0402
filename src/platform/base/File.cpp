// SPDX-License-Identifier: MIT
#include "platform/base/File.h"

#include "platform/base/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <linux/magic.h>
#include <optional>
#include <poll.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace quoddle {

namespace {

constexpr OSStatus kIOError = -36;
constexpr std::size_t kLargestStep = std::size_t(16) << 20;
constexpr OSStatus kBadName = -37;
constexpr int kMaximumLinks = 40; // the kernel's own limit

// The mask can only be read by changing it for a moment, and a file made by another thread in that moment would get wrong permissions. So
// the mask is read before there are other threads.
const mode_t kMask = [] {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return mask;
}();

/// A path with a NUL is refused, because the system would take the part before the NUL for the whole path.
bool isName(const std::string& path) {
    return path.find('\0') == std::string::npos;
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EAGAIN) { // another program with the same stream open has made it non-blocking
            pollfd stream{descriptor, POLLOUT, 0};
            ::poll(&stream, 1, -1);
            continue;
        }
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// `expectedSize` is only a hint; the file may have another size.
Result<std::string, OSStatus> readAll(int descriptor, std::size_t expectedSize, std::size_t maximumSize) {
    std::string bytes(expectedSize, '\0');
    std::size_t filled = 0;
    while (true) {
        if (filled == bytes.size())
            bytes.resize(bytes.size() + std::clamp<std::size_t>(filled, 4096, kLargestStep));
        const ssize_t count = ::read(descriptor, bytes.data() + filled, bytes.size() - filled);
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

Result<FileDescriptor, OSStatus> openRegularFile(const std::string& path, struct stat& info) {
    if (!isName(path))
        return Failure{kBadName};
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)); // a pipe without a writer must not block
    if (!file.isOpen() || ::fstat(file.number(), &info) != 0)
        return Failure{statusFromErrno(errno)};
    if (!S_ISREG(info.st_mode))
        return Failure{paramErr};
    return file;
}

/// The place where a file is to be written, and what is known of the file that is already there. The kernel resolves the links; it refuses
/// those that its protection of shared folders does not trust.
struct Place {
    std::string path; // has no link at its end, except for an open file
    struct stat info {};
    bool exists = false;
    bool isOpenFile = false; // the path is a link of the process file system, whose target may have no name
};

/// The link of the process file system, such as /proc/self/fd/1, that `path` is or leads to; empty when there is none on the way.
std::string openFileLink(std::string path) {
    for (int links = 0; links < kMaximumLinks; ++links) {
        const FileDescriptor link(::open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat info {};
        struct statfs system {};
        if (!link.isOpen() || ::fstat(link.number(), &info) != 0 || !S_ISLNK(info.st_mode) || ::fstatfs(link.number(), &system) != 0)
            return {};
        if (system.f_type == PROC_SUPER_MAGIC)
            return path;
        char target[PATH_MAX];
        const ssize_t length = ::readlinkat(link.number(), "", target, sizeof target);
        if (length <= 0)
            return {};
        path = (target[0] == '/' ? "" : path.substr(0, path.rfind('/') + 1)) + std::string(target, static_cast<std::size_t>(length));
    }
    return {};
}

/// The number of a descriptor of this process that a link of the process file system stands for.
std::optional<int> ownDescriptor(const std::string& link) {
    const std::size_t name = link.rfind('/') + 1;
    int number = -1;
    const auto [end, error] = std::from_chars(link.data() + name, link.data() + link.size(), number);
    const FileDescriptor folder(::open(link.substr(0, name).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat its {
    }, own{};
    if (error != std::errc() || end != link.data() + link.size() || !folder.isOpen() || ::fstat(folder.number(), &its) != 0 ||
        ::stat("/proc/self/fd", &own) != 0)
        return std::nullopt;
    return its.st_ino == own.st_ino && its.st_dev == own.st_dev ? std::optional(number) : std::nullopt;
}

Result<Place, OSStatus> placeOf(const std::string& path) {
    if (!isName(path))
        return Failure{kBadName};
    Place place{path};
    if (::lstat(path.c_str(), &place.info) != 0)
        return errno == ENOENT ? Result<Place, OSStatus>(place) : Failure{statusFromErrno(errno)};
    place.exists = true;
    if (!S_ISLNK(place.info.st_mode))
        return place;
    if (std::string link = openFileLink(path); !link.empty()) {
        place.path = std::move(link);
        place.isOpenFile = true;
        return ::stat(path.c_str(), &place.info) == 0 ? Result<Place, OSStatus>(place) : Failure{statusFromErrno(errno)};
    }
    const FileDescriptor target(::open(path.c_str(), O_PATH | O_CLOEXEC)); // opens neither pipes nor devices
    if (!target.isOpen())
        return Failure{errno == ENOENT ? statusFromErrno(EEXIST) : statusFromErrno(errno)};
    char name[PATH_MAX];
    const ssize_t length = ::readlink(("/proc/self/fd/" + std::to_string(target.number())).c_str(), name, sizeof name);
    if (length < 0 || ::fstat(target.number(), &place.info) != 0)
        return Failure{statusFromErrno(errno)};
    place.path.assign(name, static_cast<std::size_t>(length));
    return place;
}

/// Writes into a pipe, a device or an open file, which cannot be replaced by a new file.
OSStatus writeThrough(const Place& place, std::string_view bytes) {
    // Opening our own descriptor anew would start writing at the beginning of its file.
    if (const auto own = place.isOpenFile ? ownDescriptor(place.path) : std::nullopt)
        return writeAll(*own, bytes) ? noErr : statusFromErrno(errno);
    // a pipe without a reader must not block
    const FileDescriptor file(::open(place.path.c_str(), O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat info {};
    if (!file.isOpen() || ::fstat(file.number(), &info) != 0)
        return statusFromErrno(errno);
    if (!S_ISCHR(info.st_mode) && !S_ISFIFO(info.st_mode) && !(place.isOpenFile && S_ISREG(info.st_mode)))
        return paramErr;
    ::fcntl(file.number(), F_SETFL, O_APPEND);
    return writeAll(file.number(), bytes) ? noErr : statusFromErrno(errno);
}

/// Gives a new file the owner and the permissions of the file that it replaces. The set-user-ID and set-group-ID bits are dropped, because
/// they were given to the old contents. When the group cannot be kept, the new file's group gets no rights.
bool adoptOwnerAndMode(int descriptor, const Place& place) {
    if (!place.exists)
        return ::fchmod(descriptor, 0666 & ~kMask) == 0;
    mode_t mode = place.info.st_mode & 0777;
    if (::fchown(descriptor, place.info.st_uid, place.info.st_gid) != 0 && ::fchown(descriptor, uid_t(-1), place.info.st_gid) != 0)
        mode &= ~mode_t(070);
    return ::fchmod(descriptor, mode) == 0;
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
    case ENAMETOOLONG:
        return kBadName;
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
    struct stat info {};
    const auto file = openRegularFile(path, info);
    if (!file)
        return Failure{file.error()};
    if (static_cast<std::size_t>(info.st_size) > maximumSize)
        return Failure{memFullErr};
    return readAll(file->number(), static_cast<std::size_t>(info.st_size), maximumSize);
}

Result<std::string, OSStatus> readFileStart(const std::string& path, std::size_t maximumSize) {
    struct stat info {};
    const auto file = openRegularFile(path, info);
    if (!file)
        return Failure{file.error()};
    std::string bytes(std::min(maximumSize, static_cast<std::size_t>(info.st_size)), '\0');
    const ssize_t count = TEMP_FAILURE_RETRY(::read(file->number(), bytes.data(), bytes.size()));
    if (count < 0)
        return Failure{statusFromErrno(errno)};
    bytes.resize(static_cast<std::size_t>(count));
    return bytes;
}

Result<std::string, OSStatus> readToEnd(int descriptor, std::size_t maximumSize) {
    return readAll(descriptor, 0, maximumSize);
}

OSStatus writeFile(const std::string& path, std::string_view bytes) {
    const auto place = placeOf(path);
    if (!place)
        return place.error();
    const mode_t mode = place->info.st_mode;
    if (place->exists && !S_ISDIR(mode) && (place->isOpenFile || S_ISCHR(mode) || S_ISFIFO(mode)))
        return writeThrough(*place, bytes);
    if (place->exists && !S_ISREG(mode))
        return paramErr;
    if (place->exists && ::faccessat(AT_FDCWD, place->path.c_str(), W_OK, AT_EACCESS) != 0)
        return statusFromErrno(errno);
    std::string beside = nameBeside(place->path);
    const FileDescriptor file(::mkostemp(beside.data(), O_CLOEXEC));
    if (!file.isOpen())
        return errno == ENOENT ? -120 : statusFromErrno(errno);
    const bool written = writeAll(file.number(), bytes) && adoptOwnerAndMode(file.number(), *place) && ::fsync(file.number()) == 0 &&
                         ::rename(beside.c_str(), place->path.c_str()) == 0;
    if (written)
        return noErr;
    const OSStatus status = statusFromErrno(errno);
    ::unlink(beside.c_str());
    return status;
}

Result<std::string, OSStatus> writtenPath(const std::string& path) {
    auto place = placeOf(path);
    if (!place || place->isOpenFile)
        return Failure{place ? paramErr : place.error()};
    return std::move(place->path);
}

OSStatus copyFile(const std::string& from, const std::string& to) {
    const FileDescriptor source(::open(from.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat info {};
    if (!source.isOpen() || ::fstat(source.number(), &info) != 0)
        return statusFromErrno(errno);
    if (!S_ISREG(info.st_mode))
        return paramErr;
    const FileDescriptor target(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!target.isOpen())
        return statusFromErrno(errno);
    char bytes[65536];
    ssize_t count = 0;
    while ((count = ::read(source.number(), bytes, sizeof bytes)) != 0) {
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 || !writeAll(target.number(), {bytes, static_cast<std::size_t>(count)}))
            return statusFromErrno(errno);
    }
    return ::fchmod(target.number(), info.st_mode & 0777) == 0 ? noErr : statusFromErrno(errno);
}

std::string withoutSlashAtEnd(std::string path) {
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    return path;
}

std::string nameBeside(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1) + ".quoddle-XXXXXX";
}

} // namespace quoddle

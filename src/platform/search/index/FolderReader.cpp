// SPDX-License-Identifier: MIT
#include "platform/search/index/FolderReader.h"

#include <algorithm>
#include <cerrno>
#include <ctime>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace quoddle {

namespace {

constexpr std::size_t kBufferSize = 64 * 1024;
constexpr std::uint64_t kSecond = 1'000'000'000;

/// Wraps around for times that are centuries away, which does no harm to marks.
std::uint64_t nanoseconds(const timespec& time) {
    return static_cast<std::uint64_t>(time.tv_sec) * kSecond + static_cast<std::uint64_t>(time.tv_nsec);
}

/// The mark is made from both times, because programs may set the time of the contents, and some file systems do not keep that of the
/// status.
FolderMark markOf(const struct stat& status) {
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    const std::uint64_t contents = nanoseconds(status.st_mtim), any = nanoseconds(status.st_ctim);
    // A newer time may stand for two changes, because file systems keep times in steps of up to two seconds.
    const bool isSettled = nanoseconds(now) - contents >= 2 * kSecond && nanoseconds(now) - any >= 2 * kSecond;
    return isSettled ? std::max<FolderMark>(contents + any, kUnsettled + 1) : kUnsettled;
}

} // namespace

FolderReader::FolderReader() : mBuffer(kBufferSize) {}

int FolderReader::open(const std::string& path, bool followsLink) {
    mFolder.reset(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | (followsLink ? 0 : O_NOFOLLOW)));
    struct stat status;
    if (!mFolder.isOpen() || fstat(mFolder.number(), &status) != 0) {
        const int error = errno;
        mFolder.reset();
        return error;
    }
    mDevice = status.st_dev;
    mMark = markOf(status);
    return 0;
}

bool FolderReader::readSome(const Receiver& receiver) {
    const ssize_t count = getdents64(mFolder.number(), mBuffer.data(), mBuffer.size());
    if (count <= 0) {
        mError = count < 0 && errno != ENOENT ? errno : 0;
        close();
        return false;
    }
    for (ssize_t at = 0; at < count;) {
        const auto* item = reinterpret_cast<const dirent64*>(&mBuffer[static_cast<std::size_t>(at)]);
        at += item->d_reclen;
        const std::string_view name(item->d_name);
        if (name == "." || name == "..")
            continue;
        bool isFolder = item->d_type == DT_DIR;
        if (struct stat status; item->d_type == DT_UNKNOWN)
            isFolder = fstatat(mFolder.number(), item->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
        receiver(name, isFolder);
    }
    return true;
}

FolderMark markOfFolder(const std::string& path) {
    struct stat status;
    return lstat(path.c_str(), &status) == 0 ? markOf(status) : kUnsettled;
}

std::optional<FolderIdentity> identityOfFolder(const std::string& path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return {};
    return FolderIdentity{status.st_dev, status.st_ino};
}

FolderAccess accessToFolder(const std::string& path) {
    const auto may = [&path](int what) { return faccessat(AT_FDCWD, path.c_str(), what, AT_EACCESS) == 0; };
    return may(R_OK | X_OK) ? FolderAccess::all : may(R_OK) ? FolderAccess::names : FolderAccess::none;
}

} // namespace quoddle

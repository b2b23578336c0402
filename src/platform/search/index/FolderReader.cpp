// SPDX-License-Identifier: MIT
#include "platform/search/index/FolderReader.h"

#include <cerrno>
#include <ctime>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace quoddle {

namespace {

constexpr std::size_t kBufferSize = 64 * 1024;
constexpr std::int64_t kSecond = 1'000'000'000;

/// Of a second and more: file systems keep times in steps of up to two.
std::int64_t settledTime(const struct stat& status) {
    const std::int64_t changed = status.st_mtim.tv_sec * kSecond + status.st_mtim.tv_nsec;
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec * kSecond + now.tv_nsec - changed < 2 * kSecond ? 0 : changed;
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
    mChangeTime = settledTime(status);
    return 0;
}

bool FolderReader::readSome(const Receiver& receiver) {
    const ssize_t count = getdents64(mFolder.number(), mBuffer.data(), mBuffer.size());
    if (count <= 0) {
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

std::int64_t changeTimeOfFolder(const std::string& path) {
    struct stat status;
    return lstat(path.c_str(), &status) == 0 ? settledTime(status) : -1;
}

} // namespace quoddle

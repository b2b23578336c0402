// SPDX-License-Identifier: MIT
#include "platform/base/FolderReplacement.h"

#include "platform/base/File.h"
#include "platform/base/FileDescriptor.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>

namespace quoddle {

namespace {

namespace fs = std::filesystem;

constexpr OSStatus kBusy = -47;
constexpr OSStatus kDuplicateName = -48;
constexpr std::chrono::seconds kPatience{20};
constexpr std::chrono::milliseconds kSlice{10};

/// A hidden folder of our own beside a path. The destructor removes it with all its contents.
class Workshop {
public:
    explicit Workshop(const std::string& path) : mPath(nameBeside(path)) {
        if (!::mkdtemp(mPath.data())) {
            mStatus = errno == ENOENT ? -120 : statusFromErrno(errno);
            mPath.clear();
        }
    }
    ~Workshop() {
        if (mPath.empty())
            return;
        // The contents of a folder without write permission could not be removed.
        std::error_code error;
        for (fs::recursive_directory_iterator entry(mPath, error), end; !error && entry != end; entry.increment(error))
            if (std::error_code ignored; entry->symlink_status(ignored).type() == fs::file_type::directory)
                fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
        fs::remove_all(mPath, error);
    }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    OSStatus status() const { return mStatus; }
    std::string file(const char* name) const { return mPath + "/" + name; }

private:
    std::string mPath;
    OSStatus mStatus = noErr;
};

/// The folder at the path, locked so that no other process replaces it. Not open when there is no such folder.
Result<FileDescriptor, OSStatus> lockedFolder(const std::string& path) {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (true) {
        FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!folder.isOpen() && errno == ENOENT)
            return folder;
        if (!folder.isOpen())
            return Failure{errno == ENOTDIR ? kDuplicateName : statusFromErrno(errno)};
        const bool isHeldByOthers = ::flock(folder.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        struct stat held {
        }, standing{};
        // The folder may have been replaced while this process waited for the lock.
        if (!isHeldByOthers && ::fstat(folder.number(), &held) == 0 && ::lstat(path.c_str(), &standing) == 0 &&
            held.st_dev == standing.st_dev && held.st_ino == standing.st_ino)
            return folder;
        if (std::chrono::steady_clock::now() > deadline)
            return Failure{kBusy};
        std::this_thread::sleep_for(kSlice);
    }
}

OSStatus copyEntry(const fs::directory_entry& entry, const fs::path& to) {
    std::error_code error;
    switch (entry.symlink_status(error).type()) {
    case fs::file_type::regular:
        return copyFile(entry.path(), to);
    case fs::file_type::symlink:
        fs::copy_symlink(entry.path(), to, error);
        break;
    case fs::file_type::directory:
        fs::create_directory(to, error);
        break;
    default:
        return error ? statusFromErrno(error.value()) : paramErr;
    }
    return statusFromErrno(error.value());
}

OSStatus copyWhatIsMissing(const std::string& from, const std::string& to) {
    std::vector<std::pair<fs::path, fs::perms>> folders; // their permissions are set last, because a read-only folder could not be filled
    std::error_code error;
    for (fs::recursive_directory_iterator entry(from, error), end; !error && entry != end; entry.increment(error)) {
        const fs::path target = to / entry->path().lexically_relative(from);
        const bool isFolder = entry->symlink_status(error).type() == fs::file_type::directory;
        if (const auto type = fs::symlink_status(target, error).type(); type != fs::file_type::not_found) {
            if (isFolder && type != fs::file_type::directory)
                entry.disable_recursion_pending();
            error.clear();
            continue;
        }
        if (const OSStatus status = copyEntry(*entry, target); status != noErr)
            return status;
        if (isFolder)
            folders.emplace_back(target, entry->symlink_status(error).permissions() & fs::perms::all);
        error.clear();
    }
    for (auto folder = folders.rbegin(); !error && folder != folders.rend(); ++folder)
        fs::permissions(folder->first, folder->second, error);
    return statusFromErrno(error.value());
}

int renameWith(unsigned flags, const std::string& from, const std::string& to) {
    return ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), flags);
}

/// Puts the new folder into its place; the old one ends up in the workshop, which removes it.
OSStatus exchange(const Workshop& workshop, const std::string& made, const std::string& path, bool exists) {
    if (renameWith(exists ? RENAME_EXCHANGE : RENAME_NOREPLACE, made, path) == 0)
        return noErr;
    if (errno != EINVAL && errno != ENOSYS)
        return statusFromErrno(errno);
    // Some file systems cannot exchange two folders in one step.
    const std::string old = workshop.file("old");
    if (exists && ::rename(path.c_str(), old.c_str()) != 0)
        return statusFromErrno(errno);
    if (::rename(made.c_str(), path.c_str()) == 0)
        return noErr;
    const OSStatus status = errno == ENOTEMPTY ? kDuplicateName : statusFromErrno(errno);
    if (exists)
        ::rename(old.c_str(), path.c_str());
    return status;
}

} // namespace

OSStatus replaceFolder(const std::string& path, const std::function<bool(const std::string&)>& mayReplace,
                       const std::function<OSStatus(const std::string&)>& fill, OldContent oldContent) {
    const auto place = writtenPath(path);
    if (!place)
        return place.error();
    while (true) {
        const auto old = lockedFolder(*place);
        if (!old)
            return old.error();
        if (old->isOpen() && !mayReplace(*place))
            return kDuplicateName;
        const Workshop workshop(*place);
        const std::string made = workshop.file("new");
        OSStatus status = workshop.status();
        if (status == noErr && ::mkdir(made.c_str(), 0777) != 0)
            status = statusFromErrno(errno);
        if (status == noErr)
            status = fill(made);
        struct stat info {};
        if (status == noErr && old->isOpen()) {
            status = oldContent == OldContent::kept ? copyWhatIsMissing(*place, made) : noErr;
            if (status == noErr && (::fstat(old->number(), &info) != 0 || ::chmod(made.c_str(), info.st_mode & 0777) != 0))
                status = statusFromErrno(errno);
        }
        if (status == noErr)
            status = exchange(workshop, made, *place, old->isOpen());
        const bool wasOvertaken = status == kDuplicateName && !old->isOpen();
        if (!wasOvertaken)
            return status;
    }
}

} // namespace quoddle

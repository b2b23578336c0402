// SPDX-License-Identifier: MIT
// Reads the names in a folder in pieces, so that a folder of a million files does not block its thread for long. One thread at a time. The
// names "." and ".." are left out.
#pragma once

#include "platform/base/FileDescriptor.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace quoddle {

/// A number that changes when the contents or the permissions of a folder change.
using FolderMark = std::uint64_t;
/// The mark of a folder that has changed so recently that another change may not give it a new mark. Equal to no other mark.
constexpr FolderMark kUnsettled = 0;

class FolderReader {
public:
    FolderReader();

    /// Returns 0 or an errno value. A link is followed when `followsLink`, or when the path ends in "/".
    int open(const std::string& path, bool followsLink);
    bool isOpen() const { return mFolder.isOpen(); }
    void close() { mFolder.reset(); }
    /// The device and the mark of the open folder.
    dev_t device() const { return mDevice; }
    FolderMark mark() const { return mMark; }

    using Receiver = std::function<void(std::string_view name, bool isFolder)>;
    /// Reads about a thousand names. False when there are no more or reading fails; the folder is then closed.
    bool readSome(const Receiver& receiver);
    /// The errno value with which readSome() ended; 0 when all names have been read or the folder has been removed.
    int error() const { return mError; }

private:
    FileDescriptor mFolder;
    dev_t mDevice = 0;
    FolderMark mMark = kUnsettled;
    int mError = 0;
    std::vector<char> mBuffer;
};

/// FolderReader::mark() of a folder without opening it; kUnsettled when the folder cannot be reached.
FolderMark markOfFolder(const std::string& path);

/// The device and inode numbers of the folder at a path, through links, too; nullopt when there is no folder.
using FolderIdentity = std::pair<dev_t, ino_t>;
std::optional<FolderIdentity> identityOfFolder(const std::string& path);

/// The rights of this process in a folder, by its permissions and those of the folders above.
enum class FolderAccess : std::uint8_t {
    none,
    names, // names can be read, but not the files that have them
    all,
};
FolderAccess accessToFolder(const std::string& path);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Reads the names in a folder piece by piece, so that a folder of a million files keeps nobody waiting. One thread at a time.
// The reader follows no link below the folder that a search begins with, and leaves out "." and "..".
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

/// Differs when the contents or the permissions of a folder have changed.
using FolderMark = std::uint64_t;
/// Of a folder that was changed so short ago that a further change may leave no other mark. Equal to no other mark.
constexpr FolderMark kUnsettled = 0;

class FolderReader {
public:
    FolderReader();

    /// 0 or the error number of the system. A link is followed when `followsLink`, or when the path ends in "/".
    int open(const std::string& path, bool followsLink);
    bool isOpen() const { return mFolder.isOpen(); }
    void close() { mFolder.reset(); }
    /// Of the open folder.
    dev_t device() const { return mDevice; }
    FolderMark mark() const { return mMark; }

    using Receiver = std::function<void(std::string_view name, bool isFolder)>;
    /// Some thousand names. False, and closed, when there are no more, or none can be read.
    bool readSome(const Receiver& receiver);
    /// Why readSome() ended: 0 when all names have been read, or the folder is gone.
    int error() const { return mError; }

private:
    FileDescriptor mFolder;
    dev_t mDevice = 0;
    FolderMark mMark = kUnsettled;
    int mError = 0;
    std::vector<char> mBuffer;
};

/// As FolderReader::mark() has it, of a folder that is not opened; kUnsettled when it cannot be reached.
FolderMark markOfFolder(const std::string& path);

/// The device and the number of a folder that a path leads to, by links too; nothing when it leads to none.
using FolderIdentity = std::pair<dev_t, ino_t>;
std::optional<FolderIdentity> identityOfFolder(const std::string& path);

/// The rights of this process in a folder, by its permissions and those of the folders above.
enum class FolderAccess : std::uint8_t {
    none,
    names, // read them, and not reach what bears them
    all,
};
FolderAccess accessToFolder(const std::string& path);

} // namespace quoddle

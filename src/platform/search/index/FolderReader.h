// SPDX-License-Identifier: MIT
// Reads the names in a folder piece by piece, so that a folder of a million files keeps nobody waiting. One thread at a time.
// The reader follows no link below the folder that a search begins with, and leaves out "." and "..".
#pragma once

#include "platform/base/FileDescriptor.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace quoddle {

class FolderReader {
public:
    FolderReader();

    /// 0 or the error number of the system. A link is followed when `followsLink`.
    int open(const std::string& path, bool followsLink);
    bool isOpen() const { return mFolder.isOpen(); }
    void close() { mFolder.reset(); }
    /// Of the open folder.
    dev_t device() const { return mDevice; }
    /// When its contents were last changed, in nanoseconds; 0 when that is so short ago that a further change may bear the same time.
    std::int64_t changeTime() const { return mChangeTime; }

    using Receiver = std::function<void(std::string_view name, bool isFolder)>;
    /// Some thousand names. False, and closed, when there are no more.
    bool readSome(const Receiver& receiver);

private:
    FileDescriptor mFolder;
    dev_t mDevice = 0;
    std::int64_t mChangeTime = 0;
    std::vector<char> mBuffer;
};

/// As FolderReader::changeTime() has it, of a folder that is not opened; -1 when it is gone.
std::int64_t changeTimeOfFolder(const std::string& path);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The files that scripts have opened: file numbers, marks, permissions. One table for the process, as long as it lives.
//
// A number is never given twice, so that one kept from a closed file cannot hit another file.
#pragma once

#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <sys/types.h>

namespace quoddle::additions {

class OpenFile {
public:
    /// Ordinary files only (-50). Writing creates the file; so does reading when `creates`. The status of the failure, else a file.
    static Result<std::shared_ptr<OpenFile>, OSStatus> open(const std::string& path, bool writable, bool creates);
    ~OpenFile();
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    const std::string& path() const { return mPath; }
    bool isWritable() const { return mWritable; }
    /// Held by a command from its first look at the mark to its last change.
    std::mutex& mutex() { return mMutex; }

    Result<std::int64_t, OSStatus> size() const;
    OSStatus setSize(std::int64_t size);
    /// Up to `count` bytes at `position`; fewer only at the end of the file.
    Result<std::string, OSStatus> read(std::int64_t position, std::size_t count) const;
    OSStatus write(std::int64_t position, std::string_view bytes);

    std::int64_t mark = 0; ///< bytes from the beginning

private:
    OpenFile(int descriptor, std::string path, bool writable, dev_t device, ino_t node);
    friend class OpenFiles;

    const int mDescriptor;
    const std::string mPath;
    const bool mWritable;
    const dev_t mDevice;
    const ino_t mNode;
    std::mutex mMutex;
};

/// Any thread.
class OpenFiles {
public:
    static OpenFiles& shared();
    /// A file number. -49 when the file is open and one of the two may write, -42 when there are too many.
    Result<std::int32_t, OSStatus> open(const std::string& path, bool writable);
    /// Null when there is no such number.
    std::shared_ptr<OpenFile> find(std::int32_t number);
    /// The latest opening of the file, or null.
    std::shared_ptr<OpenFile> find(const std::string& path);
    /// -38 when it is not open.
    OSStatus close(std::int32_t number);
    OSStatus close(const std::string& path);

private:
    struct Table;
    OpenFiles();
    ~OpenFiles();
    std::unique_ptr<Table> mTable;
};

} // namespace quoddle::additions

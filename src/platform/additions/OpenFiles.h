// SPDX-License-Identifier: MIT
// The files that scripts have opened: file numbers, marks, permissions. One table for the lifetime of the process.
//
// Numbers are not reused, so that the number of a closed file cannot stand for another file.
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
    /// Opens an ordinary file (-50 for anything else). A missing file is created for writing, and for reading when `creates`. Fails with a
    /// file status.
    static Result<std::shared_ptr<OpenFile>, OSStatus> open(const std::string& path, bool writable, bool creates);
    ~OpenFile();
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    const std::string& path() const { return mPath; }
    bool isWritable() const { return mWritable; }
    /// A command holds the mutex from its first look at the mark to its last change.
    std::mutex& mutex() { return mMutex; }

    Result<std::int64_t, OSStatus> size() const;
    OSStatus setSize(std::int64_t size);
    /// Reads up to `count` bytes at `position`; fewer only at the end of the file.
    Result<std::string, OSStatus> read(std::int64_t position, std::size_t count) const;
    OSStatus write(std::int64_t position, std::string_view bytes);

    std::int64_t mark = 0; ///< in bytes from the beginning

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

/// All functions may be called on any thread.
class OpenFiles {
public:
    static OpenFiles& shared();
    /// Returns a file number. -49 when the file is already open and either opening is for writing, -42 when too many files are open.
    Result<std::int32_t, OSStatus> open(const std::string& path, bool writable);
    /// Null when no file has the number.
    std::shared_ptr<OpenFile> find(std::int32_t number);
    /// The latest opening of the file; null when it is not open.
    std::shared_ptr<OpenFile> find(const std::string& path);
    /// -38 when the file is not open.
    OSStatus close(std::int32_t number);
    OSStatus close(const std::string& path);

private:
    struct Table;
    OpenFiles();
    ~OpenFiles();
    std::unique_ptr<Table> mTable;
};

} // namespace quoddle::additions

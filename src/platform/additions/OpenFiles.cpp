// SPDX-License-Identifier: MIT
#include "platform/additions/OpenFiles.h"

#include "platform/base/File.h"

#include <cerrno>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

namespace quoddle::additions {

namespace {

constexpr std::size_t kMaximumOpen = 256;
constexpr OSStatus kNotOpen = -38;

} // namespace

// --- OpenFile

OpenFile::OpenFile(int descriptor, std::string path, bool writable, dev_t device, ino_t node)
    : mDescriptor(descriptor), mPath(std::move(path)), mWritable(writable), mDevice(device), mNode(node) {}

OpenFile::~OpenFile() {
    ::close(mDescriptor);
}

Result<std::shared_ptr<OpenFile>, OSStatus> OpenFile::open(const std::string& path, bool writable, bool creates) {
    constexpr int kCommon = O_CLOEXEC | O_NONBLOCK; // a pipe without a partner must not block
    int descriptor = ::open(path.c_str(), (writable ? O_RDWR | O_CREAT : O_RDONLY) | kCommon, 0666);
    if (descriptor < 0 && errno == ENOENT && creates)
        descriptor = ::open(path.c_str(), O_RDONLY | O_CREAT | kCommon, 0666);
    if (descriptor < 0)
        return Failure{statusFromErrno(errno)};
    struct stat info {};
    if (::fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(descriptor);
        return Failure{paramErr};
    }
    return std::shared_ptr<OpenFile>(new OpenFile(descriptor, path, writable, info.st_dev, info.st_ino));
}

Result<std::int64_t, OSStatus> OpenFile::size() const {
    struct stat info {};
    if (::fstat(mDescriptor, &info) != 0)
        return Failure{statusFromErrno(errno)};
    return std::int64_t{info.st_size};
}

OSStatus OpenFile::setSize(std::int64_t size) {
    return ::ftruncate(mDescriptor, size) == 0 ? noErr : statusFromErrno(errno);
}

Result<std::string, OSStatus> OpenFile::read(std::int64_t position, std::size_t count) const {
    std::string bytes(count, '\0');
    std::size_t filled = 0;
    while (filled < count) {
        const ssize_t got = ::pread(mDescriptor, bytes.data() + filled, count - filled, position + static_cast<std::int64_t>(filled));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return Failure{statusFromErrno(errno)};
        if (got == 0)
            break;
        filled += static_cast<std::size_t>(got);
    }
    bytes.resize(filled);
    return bytes;
}

OSStatus OpenFile::write(std::int64_t position, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::pwrite(mDescriptor, bytes.data(), bytes.size(), position);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return statusFromErrno(errno);
        position += written;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return noErr;
}

// --- OpenFiles

struct OpenFiles::Table {
    std::mutex mutex;
    std::map<std::int32_t, std::shared_ptr<OpenFile>> files;
    std::int32_t last = 0;
};

OpenFiles::OpenFiles() : mTable(std::make_unique<Table>()) {}
OpenFiles::~OpenFiles() = default;

OpenFiles& OpenFiles::shared() {
    static OpenFiles sShared;
    return sShared;
}

Result<std::int32_t, OSStatus> OpenFiles::open(const std::string& path, bool writable) {
    std::lock_guard lock(mTable->mutex);
    if (mTable->files.size() >= kMaximumOpen)
        return Failure{OSStatus{-42}};
    auto file = OpenFile::open(path, writable, true);
    if (!file)
        return Failure{file.error()};
    for (const auto& [number, other] : mTable->files)
        if (other->mDevice == (*file)->mDevice && other->mNode == (*file)->mNode && (writable || other->mWritable))
            return Failure{OSStatus{-49}};
    mTable->files.emplace(++mTable->last, *file);
    return std::int32_t{mTable->last};
}

std::shared_ptr<OpenFile> OpenFiles::find(std::int32_t number) {
    std::lock_guard lock(mTable->mutex);
    const auto found = mTable->files.find(number);
    return found == mTable->files.end() ? nullptr : found->second;
}

std::shared_ptr<OpenFile> OpenFiles::find(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0)
        return nullptr;
    std::lock_guard lock(mTable->mutex);
    for (auto at = mTable->files.rbegin(); at != mTable->files.rend(); ++at)
        if (at->second->mDevice == info.st_dev && at->second->mNode == info.st_ino)
            return at->second;
    return nullptr;
}

OSStatus OpenFiles::close(std::int32_t number) {
    std::lock_guard lock(mTable->mutex);
    return mTable->files.erase(number) ? noErr : kNotOpen;
}

OSStatus OpenFiles::close(const std::string& path) {
    const auto file = find(path);
    std::lock_guard lock(mTable->mutex);
    return file && std::erase_if(mTable->files, [&](const auto& entry) { return entry.second == file; }) ? noErr : kNotOpen;
}

} // namespace quoddle::additions

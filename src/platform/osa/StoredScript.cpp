// SPDX-License-Identifier: MIT
#include "platform/osa/StoredScript.h"

#include "platform/base/FileDescriptor.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>

namespace quoddle {

namespace {

constexpr std::size_t kWindow = 4096; ///< the number of bytes that are read at either end

struct Magic {
    std::string_view bytes;
    OSType subType;
};
constexpr Magic kMagics[] = {{"FasdUAS ", "ascr"_4cc}, {"JsOsaDAS", "jscr"_4cc}};

// The end of every stored script's trailer. In front of it stand the subtype, the version (2 bytes) and the length (2 bytes).
constexpr std::string_view kTrailerEnd = "\xFA\xDE\xDE\xAD";
constexpr std::size_t kTrailerFront = 8;

std::string_view withoutFirstLine(std::string_view bytes) {
    if (!bytes.starts_with("#!"))
        return bytes;
    std::size_t end = bytes.substr(0, kWindow).find('\n');
    return end == std::string_view::npos ? bytes : bytes.substr(end + 1);
}

std::optional<OSType> subTypeFromEnds(std::string_view head, std::string_view tail) {
    head = withoutFirstLine(head);
    const auto* magic =
        std::find_if(std::begin(kMagics), std::end(kMagics), [head](const Magic& each) { return head.starts_with(each.bytes); });
    if (magic != std::end(kMagics))
        return magic->subType;
    // Other systems may have added bytes behind the trailer.
    std::size_t end = tail.rfind(kTrailerEnd);
    if (end == std::string_view::npos || end < kTrailerFront)
        return {};
    return fourCharCode(tail.substr(end - kTrailerFront, 4));
}

std::string readAt(const FileDescriptor& file, std::uintmax_t offset, std::size_t length) {
    std::string bytes(length, '\0');
    const ssize_t count = ::pread(file.number(), bytes.data(), length, static_cast<off_t>(offset));
    bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return bytes;
}

} // namespace

std::optional<OSType> subTypeOfStoredScript(std::string_view bytes) {
    return subTypeFromEnds(bytes, bytes.substr(bytes.size() - std::min(kWindow, bytes.size())));
}

OSStatus subTypeOfStoredScriptFile(const std::string& path, OSType& subType) {
    constexpr OSStatus kPermissionError = -54;
    std::filesystem::path script = path;
    std::error_code error;
    if (std::filesystem::is_directory(script, error))
        script = script / "Contents" / "Resources" / "Scripts" / "main.scpt";
    if (!std::filesystem::exists(script, error))
        return fnfErr;
    const FileDescriptor file(::open(script.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)); // a pipe without a writer must not block
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return kPermissionError;
    const std::uintmax_t size = S_ISREG(status.st_mode) ? static_cast<std::uintmax_t>(status.st_size) : 0;
    std::size_t window = static_cast<std::size_t>(std::min<std::uintmax_t>(size, kWindow));
    subType = subTypeFromEnds(readAt(file, 0, window), readAt(file, size - window, window)).value_or(0);
    return noErr;
}

} // namespace quoddle

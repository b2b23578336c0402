// SPDX-License-Identifier: MIT
// The commands info for, list folder, list disks.
#include "platform/additions/Commands.h"
#include "platform/additions/FileParameter.h"
#include "platform/base/DateText.h"
#include "platform/base/File.h"
#include "platform/base/Text.h"
#include "platform/base/Volumes.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <unicode/coll.h>
#include <unistd.h>

namespace quoddle::additions {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaximumEntries = std::size_t(1) << 20; // in one folder, or below one when sizes are summed up

struct Kind {
    std::string_view extension;
    const char16_t* kind;
    const char16_t* typeIdentifier;
    bool isPackage;
};

constexpr Kind kKinds[] = {
    {"txt", u"Plain Text Document", u"public.plain-text", false},
    {"html", u"HTML Document", u"public.html", false},
    {"xml", u"XML Document", u"public.xml", false},
    {"json", u"JSON Document", u"public.json", false},
    {"pdf", u"PDF Document", u"com.adobe.pdf", false},
    {"rtf", u"Rich Text Document", u"public.rtf", false},
    {"png", u"PNG Image", u"public.png", false},
    {"jpg", u"JPEG Image", u"public.jpeg", false},
    {"jpeg", u"JPEG Image", u"public.jpeg", false},
    {"gif", u"GIF Image", u"com.compuserve.gif", false},
    {"tiff", u"TIFF Image", u"public.tiff", false},
    {"svg", u"SVG Image", u"public.svg-image", false},
    {"mp3", u"MP3 Audio", u"public.mp3", false},
    {"mp4", u"MPEG-4 Movie", u"public.mpeg-4", false},
    {"zip", u"ZIP Archive", u"public.zip-archive", false},
    {"sh", u"Shell Script", u"public.shell-script", false},
    {"app", u"Application", u"public.folder", true},
    {"bundle", u"Bundle", u"public.folder", true},
    {"rtfd", u"Rich Text Document with Attachments", u"public.folder", true},
    {"scpt", u"Compiled Script", u"public.data", false},
    {"scptd", u"Script Bundle", u"public.folder", true},
    {"applescript", u"AppleScript Source", u"public.source-code", false},
};

const Kind* kindOf(std::string extension) {
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
    const auto* found = std::find_if(std::begin(kKinds), std::end(kKinds), [&](const Kind& row) { return row.extension == extension; });
    return found == std::end(kKinds) ? nullptr : found;
}

AEDesc localDate(const statx_timestamp& time) {
    const std::time_t seconds = time.tv_sec;
    std::tm local{};
    ::localtime_r(&seconds, &local);
    return AEDesc::ofDate(seconds + local.tm_gmtoff + kSecondsFrom1904To1970);
}

/// The size of all files below a folder. nullopt when the script is cancelled.
std::optional<std::int64_t> folderSize(const std::string& path, const AEHandlerContext& context) {
    std::int64_t size = 0;
    std::size_t entries = 0;
    std::error_code error;
    fs::recursive_directory_iterator at(path, fs::directory_options::skip_permission_denied, error);
    for (; at != fs::recursive_directory_iterator() && !error && ++entries < kMaximumEntries; at.increment(error)) {
        if (entries % 256 == 0 && context.isCancelled())
            return std::nullopt;
        std::error_code ignored;
        if (at->is_regular_file(ignored) && !at->is_symlink(ignored))
            size += static_cast<std::int64_t>(at->file_size(ignored));
    }
    return size;
}

AEDesc optionalText(const std::string& text) {
    return text.empty() ? missingValue() : AEDesc::ofUTF8(text);
}

/// The record for "info for" without the size.
AEDesc description(const std::string& path, const struct statx& info, bool isLink) {
    const bool isFolder = S_ISDIR(info.stx_mode);
    const std::string name = fileName(path);
    std::string extension = fs::path(name).extension().string();
    extension.erase(0, 1);
    const Kind* kind = kindOf(extension);
    const bool isPackage = isFolder && kind && kind->isPackage;
    const bool matches = kind && kind->isPackage == isFolder;
    const bool isLocked = (info.stx_attributes & STATX_ATTR_IMMUTABLE) || ::access(path.c_str(), W_OK) != 0;
    return AEDesc::record({
        {"pnam"_4cc, AEDesc::ofUTF8(name)},
        {"dnam"_4cc, AEDesc::ofUTF8(name)},
        {"nmxt"_4cc, optionalText(extension)},
        {"utid"_4cc, AEDesc::ofText(matches    ? kind->typeIdentifier
                                    : isFolder ? u"public.folder"
                                               : u"public.data")},
        {"kind"_4cc, AEDesc::ofText(isLink     ? u"Alias"
                                    : matches  ? kind->kind
                                    : isFolder ? u"Folder"
                                               : u"Document")},
        {"ascd"_4cc, localDate(info.stx_mask & STATX_BTIME ? info.stx_btime : info.stx_ctime)},
        {"asmo"_4cc, localDate(info.stx_mtime)},
        {"alis"_4cc, AEDesc::ofBoolean(isLink)},
        {"asdr"_4cc, AEDesc::ofBoolean(isFolder)},
        {"ispk"_4cc, AEDesc::ofBoolean(isPackage)},
        {"hidx"_4cc, AEDesc::ofBoolean(false)},
        {"pvis"_4cc, AEDesc::ofBoolean(!name.starts_with('.'))},
        {"aslk"_4cc, AEDesc::ofBoolean(isLocked)},
        {"bzst"_4cc, AEDesc::ofBoolean(false)},
        {"asda"_4cc, missingValue()}, // the default application, type and creator are not stored with files on this system
        {"asty"_4cc, missingValue()},
        {"asct"_4cc, missingValue()},
        {"assv"_4cc, AEDesc::ofText(u"")},
        {"aslv"_4cc, AEDesc::ofText(u"")},
    });
}

/// Sorts without regard to case, as users expect of names.
void sortNames(std::vector<std::u16string>& names) {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(error));
    if (U_FAILURE(error)) {
        std::sort(names.begin(), names.end());
        return;
    }
    std::sort(names.begin(), names.end(), [&](const std::u16string& a, const std::u16string& b) {
        UErrorCode ignored = U_ZERO_ERROR;
        return collator->compare(a.data(), static_cast<std::int32_t>(a.size()), b.data(), static_cast<std::int32_t>(b.size()), ignored) ==
               UCOL_LESS;
    });
}

AEDesc listOfTexts(const std::vector<std::u16string>& texts) {
    std::vector<AEDesc> items;
    for (const std::u16string& text : texts)
        items.push_back(AEDesc::ofText(text));
    return AEDesc::list(std::move(items));
}

} // namespace

OSErr infoFor(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    const auto path = fileParameter(event, "----"_4cc);
    if (!path)
        return failParameter(event, reply, "----"_4cc, u"file", "file"_4cc);
    struct statx info {};
    if (::statx(AT_FDCWD, path->c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &info) != 0)
        return failFile(reply, statusFromErrno(errno), *path);
    std::error_code error;
    AEDesc record = description(*path, info, fs::is_symlink(*path, error));
    if (booleanParameter(event, "ptsz"_4cc).value_or(true)) {
        const auto size = S_ISDIR(info.stx_mode) ? folderSize(*path, context) : std::optional(static_cast<std::int64_t>(info.stx_size));
        if (!size)
            return userCanceledErr;
        (void)record.put("ptsz"_4cc, AEDesc::ofInt64(*size));
    }
    return answer(reply, std::move(record));
}

OSErr listFolder(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    const auto path = fileParameter(event, "----"_4cc);
    if (!path)
        return failParameter(event, reply, "----"_4cc, u"folder", "file"_4cc);
    std::error_code error;
    fs::directory_iterator at(*path, error);
    if (error)
        return failFile(reply, statusFromErrno(error.value()), *path);
    const bool withInvisibles = booleanParameter(event, "lfiv"_4cc).value_or(true);
    std::vector<std::u16string> names;
    for (; at != fs::directory_iterator() && !error; at.increment(error)) {
        if (names.size() >= kMaximumEntries)
            return fail(reply, memFullErr, u"The folder has too many items to list.");
        if (names.size() % 256 == 0 && context.isCancelled())
            return userCanceledErr;
        const std::string name = at->path().filename().string();
        if (withInvisibles || !name.starts_with('.'))
            names.push_back(utf16FromUTF8(name));
    }
    if (error)
        return failFile(reply, statusFromErrno(error.value()), *path);
    sortNames(names);
    return answer(reply, listOfTexts(names));
}

OSErr listDisks(const AEDesc&, AEDesc& reply, const AEHandlerContext&) {
    std::vector<std::u16string> names{utf16FromUTF8(fileName("/"))};
    for (const std::string& volume : mountedVolumes(kMaximumEntries))
        names.push_back(utf16FromUTF8(fileName(volume)));
    return answer(reply, listOfTexts(names));
}

} // namespace quoddle::additions

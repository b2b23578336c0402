// SPDX-License-Identifier: MIT
#include "platform/additions/FileParameter.h"

#include "platform/base/File.h"
#include "platform/base/FileURL.h"
#include "platform/base/Text.h"
#include "platform/base/UserFolders.h"

#include <filesystem>

namespace quoddle::additions {

namespace {

constexpr std::string_view kStartupDisk = "Macintosh HD";

char colonsAndSlashesSwapped(char c) {
    return c == ':' ? '/' : c == '/' ? ':' : c;
}

std::string pathOfText(const std::string& text) {
    if (text.starts_with('/'))
        return text;
    if (text == "~" || text.starts_with("~/"))
        return homeFolder() + text.substr(1);
    if (text == kStartupDisk)
        return "/";
    const std::size_t colon = text.find(':');
    std::error_code error;
    if (colon == std::string::npos)
        return (std::filesystem::current_path(error) / text).string();
    std::string path = "/";
    for (char c : std::string_view(text).substr(colon + 1))
        path += colonsAndSlashesSwapped(c);
    return path;
}

struct FileText {
    OSStatus status;
    std::u16string_view before, after;
};

constexpr FileText kTexts[] = {
    {-34, u"The disk of ", u" is full."},
    {-37, u"Bad name for file ", u"."},
    {-38, u"File ", u" wasn’t open."},
    {-40, u"Tried to position before beginning of file ", u"."},
    {-42, u"Too many files open: ", u"."},
    {fnfErr, u"File ", u" wasn’t found."},
    {-44, u"The disk of ", u" is write protected."},
    {-48, u"Duplicate file name ", u"."},
    {-49, u"File ", u" is already open."},
    {paramErr, u"", u" is not an ordinary file."},
    {-54, u"File permission error: ", u"."},
    {-61, u"File ", u" is not open with write permission."},
    {memFullErr, u"", u" is larger than what can be read at once."},
    {-120, u"Folder ", u" wasn’t found."},
};

} // namespace

std::string fileName(const std::string& path) {
    return path == "/" ? std::string(kStartupDisk) : path.substr(path.rfind('/') + 1);
}

std::optional<std::string> filePathOf(const AEDesc& file) {
    const AEDesc* named = &file;
    if (file.type() == "obj "_4cc) { // a specifier by name, such as file "name"; its container is ignored
        const AEDesc* form = file.find("form"_4cc);
        const AEDesc* data = file.find("seld"_4cc);
        if (!form || form->code() != "name"_4cc || !data)
            return std::nullopt;
        named = data;
    }
    if (named->isList() && named->count() == 1)
        named = named->itemAt(1);
    std::optional<std::string> path;
    if (isTextClass(named->type())) {
        const auto text = named->asUTF8();
        if (text && text->starts_with("file://"))
            path = pathFromFileURL(*text);
        else if (text && !text->empty())
            path = pathOfText(*text);
    } else if (!named->isList() && !named->isRecord()) {
        path = named->asFilePath();
    }
    if (!path || path->find('\0') != std::string::npos)
        return std::nullopt;
    return withoutSlashAtEnd(*path);
}

std::optional<std::string> fileParameter(const AEDesc& event, AEKeyword key) {
    const AEDesc* parameter = event.find(key);
    return parameter ? filePathOf(*parameter) : std::nullopt;
}

std::u16string colonPath(std::string_view path, bool isFolder) {
    std::string result(kStartupDisk);
    for (char c : path)
        result += colonsAndSlashesSwapped(c);
    if (isFolder && !result.ends_with(':'))
        result += ':';
    return utf16FromUTF8(result);
}

AEDesc fileResult(const std::string& path, DescType asClass) {
    std::error_code error;
    const bool isFolder = std::filesystem::is_directory(path, error);
    if (isTextClass(asClass))
        return AEDesc::ofText(colonPath(path, isFolder));
    const bool isFile = asClass == "furl"_4cc || asClass == "file"_4cc || asClass == "psxf"_4cc;
    return AEDesc::ofFilePath(isFolder && path != "/" ? path + '/' : path).withType(isFile ? "furl"_4cc : "alis"_4cc);
}

OSErr failFile(AEDesc& reply, OSStatus status, const std::string& path) {
    (void)reply.put("erob"_4cc, AEDesc::ofFilePath(path));
    const std::u16string name = u"file " + colonPath(path, false);
    for (const FileText& text : kTexts)
        if (text.status == status)
            return fail(reply, status, std::u16string(text.before) + name + std::u16string(text.after));
    return fail(reply, status, u"An error of the disk or the file system: " + name + u".");
}

} // namespace quoddle::additions

// SPDX-License-Identifier: MIT
#include "platform/additions/Bundle.h"

#include "platform/additions/FileParameter.h"
#include "platform/additions/StandardAdditions.h"
#include "platform/base/File.h"
#include "platform/base/strings/StringsFile.h"

#include <cstdlib>
#include <filesystem>
#include <mutex>

namespace quoddle {

namespace {

std::mutex pathMutex;
std::string pathOfApplication;

} // namespace

void setApplicationPath(std::string path) {
    const std::lock_guard lock(pathMutex);
    pathOfApplication = std::move(path);
}

namespace additions {

namespace {

namespace fs = std::filesystem;

void addLanguage(std::vector<std::string>& folders, std::string_view locale) {
    locale = locale.substr(0, locale.find_first_of(".@"));
    if (locale.empty() || locale == "C" || locale == "POSIX" || locale.find('/') != std::string_view::npos)
        return;
    folders.push_back(std::string(locale) + ".lproj");
    if (const std::size_t country = locale.find('_'); country != std::string_view::npos) {
        std::string dashed(locale);
        dashed[country] = '-';
        folders.push_back(dashed + ".lproj");
        folders.push_back(std::string(locale.substr(0, country)) + ".lproj");
    }
}

std::vector<std::string> languageFolders() {
    std::vector<std::string> folders{""};
    std::string_view list;
    if (const char* languages = std::getenv("LANGUAGE"))
        list = languages;
    for (; !list.empty(); list.remove_prefix(std::min(list.find(':') + 1, list.size()))) {
        addLanguage(folders, list.substr(0, list.find(':')));
        if (list.find(':') == std::string_view::npos)
            break;
    }
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const char* locale = std::getenv(variable); locale && *locale) {
            addLanguage(folders, locale);
            break;
        }
    for (const char* folder : {"en.lproj", "English.lproj", "Base.lproj"})
        folders.emplace_back(folder);
    return folders;
}

bool staysInside(const fs::path& relative) {
    if (relative.is_absolute())
        return false;
    for (const fs::path& part : relative)
        if (part == "..")
            return false;
    return true;
}

} // namespace

std::string applicationPath() {
    {
        const std::lock_guard lock(pathMutex);
        if (!pathOfApplication.empty())
            return pathOfApplication;
    }
    std::error_code error;
    const std::string program = fs::read_symlink("/proc/self/exe", error).string();
    const std::size_t contents = program.rfind("/Contents/");
    return contents == std::string::npos ? program : program.substr(0, contents);
}

std::optional<std::string> bundleParameter(const AEDesc& event) {
    return event.find("in B"_4cc) ? fileParameter(event, "in B"_4cc) : applicationPath();
}

std::optional<std::string> resourceInBundle(const std::string& bundle, std::string_view folder, std::string_view name) {
    if (!staysInside(folder) || !staysInside(name))
        return std::nullopt;
    std::error_code error;
    for (const std::string& language : languageFolders()) {
        const fs::path candidate = fs::path(bundle) / "Contents" / "Resources" / language / folder / name;
        if (fs::exists(candidate, error))
            return candidate.lexically_normal().string();
    }
    return std::nullopt;
}

std::optional<std::u16string> localizedText(const std::string& bundle, std::string_view table, std::u16string_view key) {
    const auto file = resourceInBundle(bundle, "", std::string(table) + ".strings");
    const auto bytes = file ? readFile(*file, kLargestStringsFile) : Result<std::string, OSStatus>(Failure{fnfErr});
    if (!bytes)
        return std::nullopt;
    const StringsTable strings = readStrings(*bytes);
    const auto text = strings.texts.find(std::u16string(key));
    return text == strings.texts.end() ? std::nullopt : std::optional(text->second);
}

} // namespace additions

} // namespace quoddle

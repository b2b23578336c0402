// SPDX-License-Identifier: MIT
#include "platform/additions/Folders.h"

#include "platform/additions/FileParameter.h"
#include "platform/base/File.h"
#include "platform/base/UserFolders.h"

#include <algorithm>

namespace quoddle::additions {

namespace {

constexpr std::size_t kLargestSettings = 1 << 20;
constexpr FourCharCode kUser = "fldu"_4cc, kLocal = "fldl"_4cc, kSystem = "flds"_4cc;

/// A well-known folder, with a path per domain; null in a domain that has none. A path begins with "/" or with the name of a base folder:
/// "home", "data", "config", "temp", or a name of user-dirs.dirs in capitals.
struct Folder {
    FourCharCode code;
    FourCharCode usualDomain;
    const char* user;
    const char* local;
    const char* system;
};

constexpr Folder kFolders[] = {
    {"cusr"_4cc, kUser, "home", nullptr, nullptr},
    {"desk"_4cc, kUser, "DESKTOP", nullptr, nullptr},
    {"docs"_4cc, kUser, "DOCUMENTS", nullptr, nullptr},
    {"down"_4cc, kUser, "DOWNLOAD", nullptr, nullptr},
    {"pdoc"_4cc, kUser, "PICTURES", nullptr, nullptr},
    {"\xb5"
     "doc"_4cc,
     kUser, "MUSIC", nullptr, nullptr},
    {"mdoc"_4cc, kUser, "VIDEOS", nullptr, nullptr},
    {"pubb"_4cc, kUser, "PUBLICSHARE", nullptr, nullptr},
    {"odst"_4cc, kUser, "TEMPLATES", nullptr, nullptr},
    {"site"_4cc, kUser, "home/public_html", nullptr, nullptr},
    {"temp"_4cc, kUser, "temp", "/var/tmp", "/tmp"},
    {"trsh"_4cc, kUser, "data/Trash/files", nullptr, nullptr},
    {"pref"_4cc, kUser, "config", "/etc", "/etc"},
    {"asup"_4cc, kUser, "data", "/usr/local/share", "/usr/share"},
    {"dlib"_4cc, kLocal, "data", "/usr/local/share", "/usr/share"},
    {"scr\xc4"_4cc, kUser, "data/quoddle/Scripts", "/usr/local/share/quoddle/Scripts", "/usr/share/quoddle/Scripts"},
    {"fasf"_4cc, kUser, "data/quoddle/Scripts/Folder Action Scripts", nullptr, nullptr},
    {"font"_4cc, kSystem, "data/fonts", "/usr/local/share/fonts", "/usr/share/fonts"},
    {"\xc4lib"_4cc, kSystem, "home/.local/lib", "/usr/local/lib", "/usr/lib"},
    {"\xc4hlp"_4cc, kSystem, "data/help", "/usr/local/share/help", "/usr/share/help"},
    {"dtp\xc4"_4cc, kSystem, "data/backgrounds", "/usr/local/share/backgrounds", "/usr/share/backgrounds"},
    {"apps"_4cc, kSystem, "data/applications", "/usr/local/share/applications", "/usr/share/applications"},
    {"empz"_4cc, kUser, "config/autostart", "/etc/xdg/autostart", "/etc/xdg/autostart"},
    {"kchn"_4cc, kUser, "data/keyrings", nullptr, nullptr},
    {"ppdf"_4cc, kSystem, nullptr, "/usr/local/share/ppd", "/usr/share/ppd"},
    {"macs"_4cc, kSystem, nullptr, nullptr, "/usr"},
    {"boot"_4cc, kSystem, nullptr, nullptr, "/"},
    {"usrs"_4cc, kLocal, nullptr, "/home", nullptr},
};

struct NamedDefault {
    std::string_view name;
    const char* folder;
};

constexpr NamedDefault kUserFolders[] = {
    {"DESKTOP", "Desktop"}, {"DOCUMENTS", "Documents"}, {"DOWNLOAD", "Downloads"}, {"PICTURES", "Pictures"},
    {"MUSIC", "Music"},     {"VIDEOS", "Videos"},       {"PUBLICSHARE", "Public"}, {"TEMPLATES", "Templates"},
};

/// The folder in a line of user-dirs.dirs: XDG_MUSIC_DIR="$HOME/Music". The last valid line counts; only absolute paths are valid.
std::optional<std::string> folderFromSettings(std::string_view name) {
    const auto settings = readFile(configFolder() + "/user-dirs.dirs", kLargestSettings);
    const std::string start = "XDG_" + std::string(name) + "_DIR=\"";
    std::optional<std::string> found;
    if (!settings)
        return found;
    std::string_view rest = *settings;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        if (!line.starts_with(start))
            continue;
        std::string value;
        for (line.remove_prefix(start.size()); !line.empty() && line.front() != '"'; line.remove_prefix(1)) {
            if (line.front() == '\\' && line.size() > 1)
                line.remove_prefix(1);
            value += line.front();
        }
        if (value == "$HOME" || value.starts_with("$HOME/"))
            value = homeFolder() + value.substr(5);
        while (value.size() > 1 && value.ends_with('/'))
            value.pop_back();
        if (value.starts_with('/'))
            found = value;
    }
    return found;
}

std::string baseFolder(std::string_view name) {
    if (name == "home")
        return homeFolder();
    if (name == "data")
        return dataFolder();
    if (name == "config")
        return configFolder();
    if (name == "temp")
        return pathFromEnvironment("TMPDIR", "/tmp");
    const auto known = std::find_if(std::begin(kUserFolders), std::end(kUserFolders), [name](const auto& row) { return row.name == name; });
    return folderFromSettings(name).value_or(homeFolder() + "/" + known->folder);
}

} // namespace

std::optional<std::string> wellKnownFolder(FourCharCode code, FourCharCode domain) {
    const auto folder = std::find_if(std::begin(kFolders), std::end(kFolders), [code](const Folder& row) { return row.code == code; });
    if (folder == std::end(kFolders))
        return std::nullopt;
    const FourCharCode wanted = domain ? domain : folder->usualDomain;
    const char* place = wanted == kUser ? folder->user : wanted == kLocal ? folder->local : wanted == kSystem ? folder->system : nullptr;
    if (!place)
        return std::nullopt;
    const std::string_view path = place;
    if (path.starts_with('/'))
        return std::string(path);
    const std::size_t slash = std::min(path.find('/'), path.size());
    return baseFolder(path.substr(0, slash)) + std::string(path.substr(slash));
}

} // namespace quoddle::additions

// SPDX-License-Identifier: MIT
#include "platform/applescript/component/ScriptLibraries.h"
#include "platform/base/UserFolders.h"

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace quoddle::component {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kFolder = "Script Libraries";

std::vector<std::string> librariesFolders(const std::string& bundle) {
    std::vector<std::string> folders;
    const auto add = [&](const fs::path& folder) {
        if (folder.is_absolute())
            folders.push_back(folder.string());
    };
    add(bundle.empty() ? fs::path() : fs::path(bundle) / "Contents/Resources" / kFolder);
    const char* path = std::getenv("OSA_LIBRARY_PATH");
    const std::string listed = path ? path : "";
    for (std::size_t at = 0; at < listed.size();) {
        const std::size_t end = std::min(listed.find(':', at), listed.size());
        add(listed.substr(at, end - at));
        at = end + 1;
    }
    add(fs::path(dataFolder()) / "quoddle" / kFolder);
    add(fs::path(homeFolder()) / "Library" / kFolder);
    add(fs::path("/usr/local/share/quoddle") / kFolder);
    add(fs::path("/usr/share/quoddle") / kFolder);
    return folders;
}

/// Takes the number in front of the next dot off a version.
int nextPart(std::string_view& version) {
    int number = 0;
    std::from_chars(version.data(), version.data() + version.size(), number);
    version.remove_prefix(std::min(version.find('.'), version.size() - 1) + 1);
    return number;
}

} // namespace

std::optional<std::string> fileOfLibrary(std::string_view name, const std::string& bundle) {
    if (name.empty() || name.front() == '.' || name.find_first_of(std::string_view("/\0", 2)) != std::string_view::npos)
        return std::nullopt;
    for (const std::string& folder : librariesFolders(bundle))
        for (const char* extension : {".scptd", ".scpt", ".applescript", ""}) {
            const fs::path file = fs::path(folder) / (std::string(name) + extension);
            std::error_code error;
            if (fs::exists(file, error))
                return file.string();
        }
    return std::nullopt;
}

bool isVersion(std::string_view text) {
    return !text.empty() && text.front() != '.' && text.find_first_not_of("0123456789.") == std::string_view::npos;
}

bool isVersionAtLeast(std::string_view version, std::string_view wanted) {
    while (!version.empty() || !wanted.empty()) {
        const int has = version.empty() ? 0 : nextPart(version);
        const int wants = wanted.empty() ? 0 : nextPart(wanted);
        if (has != wants)
            return has > wants;
    }
    return true;
}

} // namespace quoddle::component

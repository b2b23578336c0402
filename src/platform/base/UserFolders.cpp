// SPDX-License-Identifier: MIT
#include "platform/base/UserFolders.h"

#include "platform/base/File.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace quoddle {

namespace {

std::string folderInHome(const char* variable, const char* name) {
    std::string folder = pathFromEnvironment(variable, "");
    if (!folder.empty())
        return folder;
    const std::string home = homeFolder();
    return (home == "/" ? "" : home) + name;
}

} // namespace

std::string homeFolder() {
    std::string home = pathFromEnvironment("HOME", "");
    if (!home.empty())
        return home;
    char buffer[4096];
    passwd entry{};
    passwd* user = nullptr;
    (void)::getpwuid_r(::getuid(), &entry, buffer, sizeof buffer, &user);
    return user && user->pw_dir && *user->pw_dir == '/' ? withoutSlashAtEnd(user->pw_dir) : "/";
}

std::string dataFolder() {
    return folderInHome("XDG_DATA_HOME", "/.local/share");
}

std::string configFolder() {
    return folderInHome("XDG_CONFIG_HOME", "/.config");
}

std::string cacheFolder() {
    return folderInHome("XDG_CACHE_HOME", "/.cache");
}

std::string stateFolder() {
    return folderInHome("XDG_STATE_HOME", "/.local/state");
}

void settleUserFolders() {
    for (const char* variable : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
        if (pathFromEnvironment(variable, "").empty())
            ::unsetenv(variable);
    if (pathFromEnvironment("HOME", "").empty())
        ::setenv("HOME", homeFolder().c_str(), 1);
}

std::string pathFromEnvironment(const char* variable, const std::string& otherwise) {
    const char* value = std::getenv(variable);
    return value && *value == '/' ? withoutSlashAtEnd(value) : otherwise;
}

} // namespace quoddle

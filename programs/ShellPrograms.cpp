// SPDX-License-Identifier: MIT
#include "ShellPrograms.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string_view>
#include <unistd.h>

namespace quoddle::tool {

namespace {

constexpr std::string_view kBuiltins[] = {
    ".",        ":",        "[",       "alias", "bg",        "bind",     "break",   "builtin", "caller", "cd",      "command", "compgen",
    "complete", "continue", "declare", "dirs",  "disown",    "echo",     "enable",  "eval",    "exec",   "exit",    "export",  "false",
    "fg",       "getopts",  "hash",    "help",  "history",   "jobs",     "kill",    "let",     "local",  "logout",  "mapfile", "popd",
    "printf",   "pushd",    "pwd",     "read",  "readarray", "readonly", "return",  "set",     "shift",  "shopt",   "source",  "suspend",
    "test",     "time",     "times",   "trap",  "true",      "type",     "typeset", "ulimit",  "umask",  "unalias", "unset",   "wait"};

bool isProgram(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error) && ::access(path.c_str(), X_OK) == 0;
}

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

bool isCommandHere(const std::string& command) {
    if (command.starts_with("~/"))
        return isProgram(variable("HOME") + command.substr(1));
    if (command.find('/') != std::string::npos)
        return command[0] != '/' || isProgram(command);
    if (std::ranges::find(kBuiltins, command) != std::end(kBuiltins))
        return true;
    std::istringstream folders(variable("PATH"));
    for (std::string folder; std::getline(folders, folder, ':');)
        if (isProgram(folder + "/" + command))
            return true;
    return false;
}

} // namespace quoddle::tool

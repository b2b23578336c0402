// SPDX-License-Identifier: MIT
// The folders in which programs keep a user's files, by the XDG Base Directory Specification.
//
// Paths are absolute and have no slash at the end; the folders need not exist. An environment variable with a relative path counts as
// unset. Any thread.
#pragma once

#include <string>

namespace quoddle {

/// $HOME, or else the folder that the system's list of users names; "/" when there is none.
std::string homeFolder();

std::string dataFolder();   ///< $XDG_DATA_HOME, by default ~/.local/share
std::string configFolder(); ///< $XDG_CONFIG_HOME, by default ~/.config
std::string cacheFolder();  ///< $XDG_CACHE_HOME, by default ~/.cache
std::string stateFolder();  ///< $XDG_STATE_HOME, by default ~/.local/state

/// Takes relative paths out of the environment and gives it a HOME, for the libraries and commands that read the variables themselves.
/// To be called once, before there are other threads.
void settleUserFolders();

/// The path in an environment variable; `otherwise` when the variable is unset or its path is relative.
std::string pathFromEnvironment(const char* variable, const std::string& otherwise);

} // namespace quoddle

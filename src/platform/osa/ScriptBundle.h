// SPDX-License-Identifier: MIT
// Script bundles and applet bundles on disk: folders with the compiled script at Contents/Resources/Scripts/main.scpt.
//
// Decision: a bundle is completed beside its place and then put there. All other contents of an existing bundle are kept.
#pragma once

#include "platform/base/OSStatus.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace quoddle {

struct BundleOptions {
    std::string path;       // ends in .app or .scptd; an existing bundle there is replaced when the new one is complete
    std::string shell;      // absolute path of the applet shell for the launcher; empty to use only a shell on the PATH
    bool isDroplet = false; // whether the script has an open handler
    bool stayOpen = false;
    bool startupScreen = false;
};

/// Whether a path ends in .app or .scptd.
bool isBundleName(std::string_view path);
/// The script inside a bundle; any other path unchanged.
std::string scriptFileOf(const std::string& path);
/// The bundle whose script is this file; empty when the file is no bundle's script.
std::string bundleOfScriptFile(std::string_view path);

/// The start script of an applet. It finds the bundle from its own path, and the shell by QUODDLE_SHELL, on the PATH, or at the path
/// `shell`, which may be empty.
std::string launcherText(const std::string& shell);
/// Writes the start script as an executable file and makes the folder around it.
OSStatus writeLauncher(const std::filesystem::path& program, const std::string& shell);

/// Errors: -48 when something other than a bundle stands at the path, -37 when the name is nothing but the extension, otherwise a status of
/// replaceFolder(). After an error nothing is left behind, and the former contents are unchanged.
OSStatus writeBundle(const BundleOptions& options, std::string_view compiledScript);

} // namespace quoddle

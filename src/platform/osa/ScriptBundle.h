// SPDX-License-Identifier: MIT
// Script bundles and applet bundles on disk: folders with the compiled script at Contents/Resources/Scripts/main.scpt.
//
// Decision: a bundle is made whole beside its place and then put there; what an existing one holds besides the script goes on living in it.
#pragma once

#include "platform/base/OSStatus.h"

#include <string>
#include <string_view>

namespace quoddle {

struct BundleOptions {
    std::string path;       // ends in .app or .scptd; an existing bundle there is replaced when the new one is complete
    std::string shell;      // absolute path of the applet shell, for the launcher; empty: only the one on the PATH
    bool isDroplet = false; // the script has an open handler
    bool stayOpen = false;
    bool startupScreen = false;
};

/// Names that end in .app or .scptd are those of bundles.
bool isBundleName(std::string_view path);
/// The script inside a bundle; any other path as it is.
std::string scriptFileOf(const std::string& path);
/// The bundle whose script a file is; empty when it is none.
std::string bundleOfScriptFile(std::string_view path);

/// -48 when something that is no bundle stands at the path, -37 when its name is nothing but the ending; otherwise a status of
/// replaceFolder(). On failure nothing is left behind, and what was there is there still.
OSStatus writeBundle(const BundleOptions& options, std::string_view compiledScript);

} // namespace quoddle

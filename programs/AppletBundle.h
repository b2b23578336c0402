// SPDX-License-Identifier: MIT
// Makes script bundles and applet bundles on disk.
#pragma once

#include "platform/base/OSStatus.h"

#include <string>
#include <string_view>

namespace quoddle::tool {

struct BundleOptions {
    std::string path;       // ends in .app or .scptd; an existing bundle there is replaced when the new one is complete
    std::string shell;      // absolute path of the applet shell, for the launcher
    bool isDroplet = false; // the script has an open handler
    bool stayOpen = false;
    bool startupScreen = false;
};

/// -48 when something that is no bundle stands at the path; otherwise a file status. On failure nothing is left behind.
OSStatus writeBundle(const BundleOptions& options, std::string_view compiledScript);

} // namespace quoddle::tool

// SPDX-License-Identifier: MIT
// Makes an applet bundle that a Mac has saved one that runs here by itself: with a start script and with the settings under our names.
//
// Decision: only the property list and the start script are written; everything else of the bundle, the script above all, stays as it is,
// so that the bundle can go back to a Mac.
#pragma once

#include "platform/base/Result.h"
#include "platform/foundation/NSBundle.h"

#include <string>
#include <vector>

namespace quoddle::tool {

/// Returns in words for people what was added; nothing when nothing was to be done. The error is a sentence. `shell` is the absolute path
/// that the start script falls back on.
Result<std::vector<std::string>, std::string> adopt(const NSBundle& bundle, const std::string& shell);

} // namespace quoddle::tool

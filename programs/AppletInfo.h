// SPDX-License-Identifier: MIT
// What can be told of an applet without running it: its settings, and the handlers of its script.
#pragma once

#include "platform/base/Result.h"
#include "platform/foundation/NSBundle.h"

#include <string>
#include <vector>

namespace quoddle::tool {

struct InfoLine {
    std::string label;
    std::string value;
};

/// In the order to print them, without control characters. `isComplete` becomes false when the script could not be read, which a line then
/// says.
std::vector<InfoLine> infoOf(const NSBundle& bundle, bool& isComplete);

} // namespace quoddle::tool

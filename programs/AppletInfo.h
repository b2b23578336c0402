// SPDX-License-Identifier: MIT
// The facts that can be told of an applet without running it: its settings, and the handlers of its script.
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

/// The lines in the order to print them, without control characters. When the script could not be read, a line says so and `isComplete`
/// becomes false.
std::vector<InfoLine> infoOf(const NSBundle& bundle, bool& isComplete);

} // namespace quoddle::tool

// SPDX-License-Identifier: MIT
// Compiles scripts without writing anything and tells their errors, in lines for people and editors or as JSON.
#pragma once

#include "ScriptTool.h"

#include <string>
#include <vector>

namespace quoddle::tool {

struct ScriptSource {
    std::string name; ///< as it is told; "-" for what is no file
    Result<std::string, InputFault> bytes;
};

/// Checks each source by itself and prints the errors on standard output. The compiler stops at the first error of a source, so there is
/// one for each at most. Answers the exit status: 1 when there is any error.
int checkScripts(ComponentInstance instance, const std::vector<ScriptSource>& sources, bool asJSON);

} // namespace quoddle::tool

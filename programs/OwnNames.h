// SPDX-License-Identifier: MIT
// Advice for a common mistake: a name of one's own that is a word of the language, or of an application that the script tells.
#pragma once

#include "ScriptTool.h"

#include <string>
#include <string_view>

namespace quoddle::tool {

/// A sentence when the failure may come from such a name; empty otherwise. `source` is what was compiled.
std::string adviceOnNames(const ScriptFailure& failure, std::u16string_view source);

} // namespace quoddle::tool

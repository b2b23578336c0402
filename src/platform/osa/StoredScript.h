// SPDX-License-Identifier: MIT
// Telling stored scripts apart, by their first and last bytes only. Reading them is the components' business.
#pragma once

#include "platform/osa/OSATypes.h"

#include <optional>
#include <string_view>

namespace quoddle {

/// The subtype of the component that stored the bytes; nothing for anything that is no stored script, such as source text.
std::optional<OSType> subTypeOfStoredScript(std::string_view bytes);

/// The same for a file or a script bundle (a folder with Contents/Resources/Scripts/main.scpt). Reads a few kilobytes.
/// noErr with 0 for a file that is no stored script; -43 when there is no such file, -54 when it cannot be read.
OSStatus subTypeOfStoredScriptFile(const std::string& path, OSType& subType);

} // namespace quoddle

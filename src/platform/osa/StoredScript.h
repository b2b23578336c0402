// SPDX-License-Identifier: MIT
// Recognizes stored scripts by their first and last bytes. The components read them.
#pragma once

#include "platform/osa/OSATypes.h"

#include <optional>
#include <string_view>

namespace quoddle {

/// The subtype of the component that stored the bytes; nullopt when they are no stored script, but for example source text.
std::optional<OSType> subTypeOfStoredScript(std::string_view bytes);

/// The same for a file or a script bundle (a folder with Contents/Resources/Scripts/main.scpt). Reads a few kilobytes. noErr with subtype 0
/// for a file that is no stored script; -43 when there is no such file, -54 when it cannot be read.
OSStatus subTypeOfStoredScriptFile(const std::string& path, OSType& subType);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// File URLs and the absolute paths that they stand for, both as UTF-8 bytes. Files of other machines are not supported.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quoddle {

/// "file:///a%20b" for "/a b". The path is not normalized; bytes that are no UTF-8 are escaped too.
std::string fileURLFromPath(std::string_view path);
/// nullopt for another scheme, another host, a relative path, a broken escape or a NUL in the path.
std::optional<std::string> pathFromFileURL(std::string_view url);

} // namespace quoddle

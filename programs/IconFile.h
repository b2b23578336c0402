// SPDX-License-Identifier: MIT
// The picture in an icon file that a desktop can show as it stands. Nothing is decoded: an icon file may hold finished PNG pictures.
#pragma once

#include "platform/foundation/NSBundle.h"

#include <optional>
#include <string>

namespace quoddle::tool {

/// Of the PNG pictures in an .icns file the one nearest to 256 pixels, larger rather than smaller; a PNG file as it is. Nothing when there
/// is none of at most 1024 pixels.
std::optional<std::string> pngFromIcon(std::string_view bytes);
/// That of the bundle's "CFBundleIconFile".
std::optional<std::string> pngIconOf(const NSBundle& bundle);

} // namespace quoddle::tool

// SPDX-License-Identifier: MIT
// Takes from an icon file the picture that a desktop can show. Nothing is decoded, because icon files may hold finished PNG pictures.
#pragma once

#include "platform/foundation/NSBundle.h"

#include <optional>
#include <string>

namespace quoddle::tool {

/// The PNG picture in an .icns file that is nearest to 256 pixels, larger rather than smaller; the whole of a PNG file. nullopt when there
/// is none of at most 1024 pixels.
std::optional<std::string> pngFromIcon(std::string_view bytes);
/// The picture of the bundle's "CFBundleIconFile".
std::optional<std::string> pngIconOf(const NSBundle& bundle);

} // namespace quoddle::tool

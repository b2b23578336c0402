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
struct Icon {
    std::string bytes;
    QString type; ///< "png" or "svg"
};
/// The picture of the bundle's "CFBundleIconFile".
std::optional<Icon> iconOf(const NSBundle& bundle);

} // namespace quoddle::tool

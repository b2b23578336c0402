// SPDX-License-Identifier: MIT
// The icon of a bundle, or one of our own drawing for a bundle that brings none that can be read.
#pragma once

#include <QIcon>

namespace quoddle {

class NSBundle;

/// "CFBundleIconFile" among the resources, with or without extension (icns, png). Reads and decodes now: not before the first paint.
QIcon iconForBundle(const NSBundle& bundle);
/// Drawn at any size.
QIcon genericAppletIcon();

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The icon of a bundle, or one of our own drawing for a bundle that brings none that can be read.
#pragma once

#include <QIcon>

namespace quoddle {

class NSBundle;

/// The icon that "CFBundleIconFile" names among the resources, with or without extension (icns, png). The file is read and decoded at once,
/// so this is not called before the first paint.
QIcon iconForBundle(const NSBundle& bundle);
/// The path of a picture among the bundle's resources, named with or without its extension; empty when there is none.
QString pathForImageResource(const NSBundle& bundle, const QString& name);
/// The icon that all windows of the application wear: the bundle's, or a generic one for null. The first call chooses it for good.
QIcon applicationIcon(const NSBundle* bundle);
/// The icon of applets that bring none; drawn at any size.
QIcon genericAppletIcon();

} // namespace quoddle

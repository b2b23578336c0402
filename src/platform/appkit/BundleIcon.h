// SPDX-License-Identifier: MIT
// The icon of a bundle, or one of our own drawing for a bundle that brings none that can be read.
#pragma once

#include <QIcon>

namespace quoddle {

class NSBundle;

/// "CFBundleIconFile" among the resources, with or without extension (icns, png). Reads and decodes now: not before the first paint.
QIcon iconForBundle(const NSBundle& bundle);
/// The path of a picture among the bundle's resources, named with or without its extension; empty when there is none.
QString pathForImageResource(const NSBundle& bundle, const QString& name);
/// The icon that all windows of the application wear: the bundle's (a generic one for null), put on at the first call and kept.
QIcon applicationIcon(const NSBundle* bundle);
/// Drawn at any size.
QIcon genericAppletIcon();

} // namespace quoddle

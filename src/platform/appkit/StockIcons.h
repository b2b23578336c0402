// SPDX-License-Identifier: MIT
// The stock icons of dialogs, and icons made of others. Everything is drawn for the resolution of the screen that is asked for.
// Main thread only.
#pragma once

#include "platform/base/FourCharCode.h"

#include <QIcon>
#include <QPixmap>

namespace quoddle {

/// The icon for "stop" and "caut"; null for any other type.
QIcon iconForFileType(FourCharCode type);
/// An icon of several sheets of paper, one behind the other.
QIcon multipleDocumentsIcon();
/// The picture or icon of a file, by its content. Null, with a line in the log, when there is none in it. Pictures that are too large for
/// any use as an icon are not read.
QIcon iconFromImageFile(const QString& path);
/// The icon as a picture of at most `points` wide and high, in its own proportions.
QPixmap pixmapForIcon(const QIcon& icon, int points, double devicePixelRatio);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The stock icons of dialogs, and icons put together. Everything is drawn for the resolution of the screen that is asked for.
// Main thread only.
#pragma once

#include "platform/base/FourCharCode.h"

#include <QIcon>
#include <QPixmap>

namespace quoddle {

/// "stop" and "caut"; a null icon for any other type.
QIcon iconForFileType(FourCharCode type);
/// Several sheets of paper, one behind the other.
QIcon multipleDocumentsIcon();
/// The picture or icon of a file, by its content; a null icon, and a line in the log, when there is none in it. Pictures that are too large
/// for any use as an icon are not read.
QIcon iconFromImageFile(const QString& path);
/// At most so many points wide and high, in its own proportions.
QPixmap pixmapForIcon(const QIcon& icon, int points, double devicePixelRatio);

} // namespace quoddle

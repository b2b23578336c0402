// SPDX-License-Identifier: MIT
// The pictures that a script may ask for in a dialog, 64 points wide.
// Main thread only.
#pragma once

#include "platform/panels/CommandParameters.h"

#include <functional>

#include <QIcon>
#include <QPixmap>

namespace quoddle {

/// Draws the icon with the application's as a badge in its lower right quarter.
QPixmap addAppIconToIconImage(const QIcon& icon, const QIcon& applicationIcon, double devicePixelRatio);
/// Reads the picture of a stop, note, caution or file parameter; null for the others, and for a file that holds no picture. An error when
/// the file does not exist. `applicationIcon` is only called when that icon is needed.
std::optional<CommandError> readDialogIcon(const IconParameter& parameter, const std::function<QIcon()>& applicationIcon,
                                           double devicePixelRatio, QPixmap& pixmap);

} // namespace quoddle

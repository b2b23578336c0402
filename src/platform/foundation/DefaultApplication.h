// SPDX-License-Identifier: MIT
// The program with which the desktop opens a file, by the associations of MIME types: mimeapps.list and mimeinfo.cache.
// Decision: this only tells what the desktop will do; the desktop itself opens files.
// Any thread; may read the first bytes of the file.
#pragma once

#include <QString>

namespace quoddle {

/// The program's name as desktopEntryName() gives it; empty when no program opens the file. Links are followed.
QString defaultApplicationOfFile(const QString& path);

} // namespace quoddle

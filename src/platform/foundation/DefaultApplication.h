// SPDX-License-Identifier: MIT
// The program that the desktop opens a file with, by the associations of MIME types: mimeapps.list and mimeinfo.cache.
// One decision: it says what the desktop will do, and does nothing; opening is the desktop's.
// Any thread; it may read the first bytes of the file.
#pragma once

#include <QString>

namespace quoddle {

/// Its name as desktopEntryName() tells it; empty when there is none. Links are followed.
QString defaultApplicationOfFile(const QString& path);

} // namespace quoddle

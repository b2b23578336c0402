// SPDX-License-Identifier: MIT
// The program with which the desktop opens a file, by the associations of MIME types: mimeapps.list and mimeinfo.cache.
// Decision: this only tells what the desktop will do; the desktop itself opens files.
// Any thread; may read the first bytes of the file.
#pragma once

#include <QString>

namespace quoddle {

/// The program's name as desktopEntryName() gives it; empty when no program opens the file. Links are followed.
QString defaultApplicationOfFile(const QString& path);

/// The identifier ("NAME.desktop") of the program that opens files of a type, or of one that it is a kind of, as if the program `except`
/// were not installed; empty when there is none.
QString defaultApplicationOfType(const QString& type, const QString& except);

/// Whether the desktop entry with the identifier ("NAME.desktop") is there and can be started.
bool isApplicationInstalled(const QString& identifier);

} // namespace quoddle

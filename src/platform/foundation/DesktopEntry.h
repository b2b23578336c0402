// SPDX-License-Identifier: MIT
// The name under which the desktop knows an applet, and the desktop entry by which it does: NAME.desktop in the user's applications folder.
// Decision: as the convention for desktop entries asks, that name is also the applet's name on the session bus. It begins with "applet-",
// so that no bundle, whatever identifier it claims, can take the place of a program of the system. This file only reads entries; the
// installer writes them.
#pragma once

#include "platform/foundation/NSBundle.h"

#include <optional>

namespace quoddle {

/// The key for the bundle's path. Only entries of installed applets have it.
inline const QString kDesktopEntryBundleKey = QStringLiteral("X-Quoddle-Bundle");

/// "applet-" and the bundle identifier, or "io.quoddle.applet.NAME" when the identifier has fewer than two parts. Always a valid bus name
/// and file name.
QString desktopNameForBundle(const NSBundle& bundle);
/// The object path that belongs to a bus name: "/applet_com/example/tool" for "applet-com.example.tool".
QString desktopObjectPath(const QString& name);

/// $XDG_DATA_HOME/applications; the folder need not exist.
QString desktopEntriesFolder();
QString desktopEntryPath(const QString& name);

using DesktopEntryValues = QHash<QString, QString>;
/// The values of the group [Desktop Entry], with escapes resolved; the first of two equal keys counts. nullopt when the file cannot be read
/// or is larger than 64 KiB.
std::optional<DesktopEntryValues> desktopEntryValues(const QString& path);
/// The name in the user's language, else the name without a language; empty when there is neither. One line of at most 200 characters.
QString desktopEntryName(const DesktopEntryValues& entry);
/// The values of one group of a file of the same form, which may have up to `maximumSize` bytes; empty when the file cannot be read or
/// lacks the group.
DesktopEntryValues desktopFileGroup(const QString& path, const QString& group, std::size_t maximumSize);
/// One value of a desktop entry; nullopt also when the entry lacks the key.
std::optional<QString> desktopEntryValue(const QString& path, const QString& key);
/// Whether the entry of the bundle's name belongs to the bundle at this path and not to a copy of it elsewhere.
bool isInstalledOnDesktop(const NSBundle& bundle);

} // namespace quoddle

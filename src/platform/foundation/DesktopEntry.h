// SPDX-License-Identifier: MIT
// Under which name the desktop knows an applet, and the file by which it does: NAME.desktop in the user's applications folder.
// One decision: that name is also the applet's name on the session bus, as desktop entries have it. It begins with "applet-", so that no
// bundle, whatever identifier it claims, can take the place of a program of the system. It reads; making the file is the installer's.
#pragma once

#include "platform/foundation/NSBundle.h"

#include <optional>

namespace quoddle {

/// The key that tells the files of installed applets from all others, with the bundle's path.
inline const QString kDesktopEntryBundleKey = QStringLiteral("X-Quoddle-Bundle");

/// "applet-" and the bundle identifier, or "io.quoddle.applet.NAME" where the identifier has not two parts; always a valid bus name and
/// file name.
QString desktopNameForBundle(const NSBundle& bundle);
/// The object path that belongs to such a name: "/applet_com/example/tool" for "applet-com.example.tool".
QString desktopObjectPath(const QString& name);

/// $XDG_DATA_HOME/applications; need not exist.
QString desktopEntriesFolder();
QString desktopEntryPath(const QString& name);

using DesktopEntryValues = QHash<QString, QString>;
/// The group [Desktop Entry], escapes resolved; the first of two equal keys counts. Nothing when the file cannot be read or is larger than
/// 64 KiB.
std::optional<DesktopEntryValues> desktopEntryValues(const QString& path);
/// The name in the user's language, or else the one without a language; empty when there is neither. One line of at most 200 characters.
QString desktopEntryName(const DesktopEntryValues& entry);
/// Any group of a file in the same form, of at most `maximumSize` bytes; empty when the file cannot be read or lacks the group.
DesktopEntryValues desktopFileGroup(const QString& path, const QString& group, std::size_t maximumSize);
/// One value of it; nothing as well when it lacks the key.
std::optional<QString> desktopEntryValue(const QString& path, const QString& key);
/// Whether the entry of the bundle's name stands for the bundle at this place, not for a copy elsewhere.
bool isInstalledOnDesktop(const NSBundle& bundle);

} // namespace quoddle

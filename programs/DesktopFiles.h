// SPDX-License-Identifier: MIT
// The texts of the files by which a desktop knows an applet: its desktop entry, its service on the session bus, its own types of files.
#pragma once

#include <string>
#include <string_view>

#include "DocumentTypes.h"

namespace quoddle::tool {

struct DesktopApplet {
    QString desktopName; ///< the name from DesktopEntry.h
    QString title;       ///< the title in the bundle, which may hold anything
    QString bundlePath;  ///< absolute, like the three below; without control characters other than line ends and tabs
    QString shell;
    QString tool; ///< this program
    QString icon; ///< may be empty
    QStringList mimeTypes;
    QList<OwnType> ownTypes;
};

std::string desktopEntryText(const DesktopApplet& applet);
/// An entry that holds the applet's name and bundle, and that desktops do not show.
std::string hiddenEntryText(const DesktopApplet& applet);
std::string serviceText(const DesktopApplet& applet);
/// A package for the database of MIME types: the applet's own types.
std::string mimePackageText(const DesktopApplet& applet);
/// Whether the text of a service file or of a MIME package was made here.
bool isServiceOfOurs(std::string_view text);
bool isMIMEPackageOfOurs(std::string_view text);

} // namespace quoddle::tool

// SPDX-License-Identifier: MIT
// The text of the two files by which a desktop starts an applet: its desktop entry and its service on the session bus.
#pragma once

#include <string>
#include <string_view>

#include <QStringList>

namespace quoddle::tool {

struct DesktopApplet {
    QString desktopName; ///< the name from DesktopEntry.h
    QString title;       ///< the title in the bundle, which may hold anything
    QString bundlePath;  ///< absolute, like the three below; without control characters other than line ends and tabs
    QString shell;
    QString tool; ///< this program
    QString icon; ///< may be empty
    QStringList mimeTypes;
};

std::string desktopEntryText(const DesktopApplet& applet);
std::string serviceText(const DesktopApplet& applet);
/// Whether the text of a service file was made by serviceText().
bool isServiceOfOurs(std::string_view text);

} // namespace quoddle::tool

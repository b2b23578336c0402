// SPDX-License-Identifier: MIT
// The text of the two files by which a desktop starts an applet: its desktop entry and its service on the session bus.
#pragma once

#include <string>
#include <string_view>

#include <QStringList>

namespace quoddle::tool {

struct DesktopApplet {
    QString desktopName; ///< DesktopEntry.h
    QString title;       ///< as the bundle has it: may hold anything
    QString bundlePath;  ///< absolute, like the three below; without control characters
    QString shell;
    QString tool; ///< this program
    QString icon; ///< may be empty
    QStringList mimeTypes;
};

std::string desktopEntryText(const DesktopApplet& applet);
std::string serviceText(const DesktopApplet& applet);
/// Whether a service file is one of those.
bool isServiceOfOurs(std::string_view text);

} // namespace quoddle::tool

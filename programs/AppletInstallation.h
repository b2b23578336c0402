// SPDX-License-Identifier: MIT
// Makes an applet known to the desktop and takes it back: a desktop entry, a service of the session bus, an icon and its own types of
// files, all below the user's data folder. Programs that have opened a type before stay its default (DefaultPrograms.h).
//
// Decision: the desktop entry is the record of what was installed, and the other files are found by its name. It is written first, as one
// that desktops do not show, and once more behind the others; it is removed last. So what a killed process has left can be removed like an
// applet that was installed whole. The bundle stays where it is and is not changed.
#pragma once

#include "DefaultPrograms.h"
#include "platform/base/Result.h"
#include "platform/foundation/NSBundle.h"

#include <optional>
#include <string>

namespace quoddle::tool {

struct Installed {
    QString entry;    ///< path of the desktop entry
    QString replaced; ///< the bundle with the same identifier that was installed before, when it is another one and still exists
};

/// Installs a bundle, in place of an earlier one with the same identifier. On an error, which is a sentence, nothing new is left behind.
Result<Installed, std::string> install(const NSBundle& bundle, const std::string& shell, DefaultProgram defaults);

struct InstalledApplet {
    QString desktopName;
    QString entry;  ///< path of the desktop entry
    QString bundle; ///< its path, where no bundle need be any more
};

/// The applet that was installed from a bundle in the folder, where no bundle need be any more.
std::optional<InstalledApplet> findInstalledFrom(const QString& folder);

/// `word` is the path of the bundle, its title, or its desktop name. The error is a sentence.
Result<InstalledApplet, std::string> findInstalled(const std::string& word);

/// Removes what install() has made. Answers an error as a sentence; empty when there is none. On an error it can be tried again.
std::string uninstall(const InstalledApplet& applet);

} // namespace quoddle::tool

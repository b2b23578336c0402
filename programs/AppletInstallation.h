// SPDX-License-Identifier: MIT
// Makes an applet known to the desktop and takes it back: a desktop entry, a service of the session bus, an icon, all below the user's data
// folder.
//
// Decision: the desktop entry is the record of what was installed, written last and removed first; everything is found again by its name.
// The bundle stays where it is and is not changed.
#pragma once

#include "platform/base/Result.h"
#include "platform/foundation/NSBundle.h"

#include <optional>
#include <string>

namespace quoddle::tool {

struct Installed {
    QString entry;    ///< path of the desktop entry
    QString replaced; ///< the bundle of the same identifier that was installed before, when that is another one that still exists
};

/// Replaces an earlier installation of the same identifier. The error is a sentence; nothing new is left behind then.
Result<Installed, std::string> install(const NSBundle& bundle, const std::string& shell);

/// `word` is the path of a bundle, which need not exist any more, or the title or desktop name of an installed applet. The path of the
/// entry that is gone, or a sentence.
Result<QString, std::string> uninstall(const std::string& word);

} // namespace quoddle::tool

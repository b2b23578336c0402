// SPDX-License-Identifier: MIT
// Makes an applet known to the desktop and takes it back: a desktop entry, a service of the session bus and an icon, all below the user's
// data folder.
//
// Decision: the desktop entry is the record of what was installed. It is written last and removed first; the other files are found by its
// name. The bundle stays where it is and is not changed.
#pragma once

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
Result<Installed, std::string> install(const NSBundle& bundle, const std::string& shell);

/// Removes an installed applet. `word` is the path of its bundle, which need not exist any more, its title, or its desktop name. Answers
/// the path of the entry that was removed, or an error as a sentence.
Result<QString, std::string> uninstall(const std::string& word);

} // namespace quoddle::tool

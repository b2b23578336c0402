// SPDX-License-Identifier: MIT
// A script that a user opens on the desktop is run, with a question first and errors in an alert.
//
// Decision: the user is asked each time, because a file that lies on the desktop may have come from anywhere; who wants no question makes
// an applet of the script. The dialogs are a script of our own, so that osascript shows them as it shows any script's.
#pragma once

#include <string>

namespace quoddle::tool {

/// Becomes osascript, the one beside this program. Answers only when it cannot be started, with the reason.
std::string openScript(const std::string& path);

} // namespace quoddle::tool

// SPDX-License-Identifier: MIT
// A script or packed applet that a user opens on the desktop is run with a question first, and with errors in an alert.
//
// Decision: about a script the user is asked each time, because a file that lies on the desktop may have come from anywhere; who wants no
// question makes an applet of the script. About a packed applet the user is asked once. The dialogs are scripts of our own, so that
// osascript shows them as it shows any script's; their texts are in the user's language.
#pragma once

#include "platform/base/Result.h"

#include <string>

namespace quoddle::tool {

/// Becomes osascript, the one beside this program. Answers only when it cannot be started, with the reason.
std::string openScript(const std::string& path);

/// Unpacks an applet that the user knows, or agrees to. Answers the path of its bundle, which is empty when the user has not agreed; or
/// the error as a sentence, which an alert has shown where there is a display.
Result<std::string, std::string> openPackedApplet(const std::string& path);

} // namespace quoddle::tool

// SPDX-License-Identifier: MIT
// What the commands that choose files have in common once their panel is ready.
// Main thread only.
#pragma once

#include "dialogs/DialogSession.h"
#include "platform/appkit/NSOpenPanel.h"

namespace quoddle {

/// Shows the panel when it is its turn. The result is asked for once, when something was chosen; whatever it holds is held until the reply
/// has been sent.
void beginFileChooserSession(const std::shared_ptr<NSSavePanel>& panel, std::function<AEDesc()> result);

/// One file URL, or a list of them in the panel's order.
AEDesc chosenFiles(const NSOpenPanel& panel, bool multipleSelectionsAllowed);

} // namespace quoddle

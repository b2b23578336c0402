// SPDX-License-Identifier: MIT
// The commands that a person answers: one row for each, with the function that makes its dialog.
#pragma once

#include "platform/panels/CommandDialog.h"

#include <span>

namespace quoddle {

struct InteractiveCommand {
    AEEventClass eventClass;
    AEEventID eventID;
    CommandDialog (*makeDialog)(const AEDesc& event, const Asker& asker);
};

std::span<const InteractiveCommand> interactiveCommands();
/// The row of the event's command; null when it is not an interactive one.
const InteractiveCommand* interactiveCommandOf(const AEDesc& event);

} // namespace quoddle

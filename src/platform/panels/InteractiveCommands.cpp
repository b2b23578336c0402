// SPDX-License-Identifier: MIT
#include "platform/panels/InteractiveCommands.h"

#include <algorithm>

namespace quoddle {

namespace {

constexpr InteractiveCommand kCommands[] = {
    {"syso"_4cc, "dlog"_4cc, displayDialogDialog},     {"syso"_4cc, "disA"_4cc, displayAlertDialog},
    {"gtqp"_4cc, "chlt"_4cc, chooseFromListDialog},    {"syso"_4cc, "stdf"_4cc, chooseFileDialog},
    {"syso"_4cc, "stfl"_4cc, chooseFolderDialog},      {"syso"_4cc, "nwfl"_4cc, chooseFileNameDialog},
    {"syso"_4cc, "chcl"_4cc, chooseColorDialog},       {"syso"_4cc, "chur"_4cc, chooseURLDialog},
    {"syso"_4cc, "ppcb"_4cc, chooseApplicationDialog},
};

} // namespace

std::span<const InteractiveCommand> interactiveCommands() {
    return kCommands;
}

const InteractiveCommand* interactiveCommandOf(const AEDesc& event) {
    const auto found = std::find_if(std::begin(kCommands), std::end(kCommands), [&event](const InteractiveCommand& command) {
        return command.eventClass == event.eventClass() && command.eventID == event.eventID();
    });
    return found == std::end(kCommands) ? nullptr : found;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/additions/StandardAdditions.h"

#include "platform/additions/Command.h"

namespace quoddle {

namespace {

constexpr additions::CommandRow kCommands[] = {
    {"syso"_4cc, "exec"_4cc, additions::doShellScript},
};

} // namespace

void installStandardAdditions() {
    auto& manager = NSAppleEventManager::sharedAppleEventManager();
    for (const additions::CommandRow& row : kCommands)
        manager.setAdditionHandler(row.command, row.eventClass, row.eventID);
}

} // namespace quoddle

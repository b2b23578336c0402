// SPDX-License-Identifier: MIT
#include "platform/additions/StandardAdditions.h"

#include "platform/additions/Commands.h"

namespace quoddle {

namespace {

constexpr additions::CommandRow kCommands[] = {
    {"syso"_4cc, "exec"_4cc, additions::doShellScript},
    {"syso"_4cc, "rand"_4cc, additions::randomNumber},
    {"syso"_4cc, "rond"_4cc, additions::roundNumber},
    {"syso"_4cc, "offs"_4cc, additions::offsetOf},
    {"syso"_4cc, "ntoc"_4cc, additions::asciiCharacter},
    {"syso"_4cc, "cton"_4cc, additions::asciiNumber},
    {"ears"_4cc, "ffdr"_4cc, additions::pathTo},
    {"syso"_4cc, "rpth"_4cc, additions::pathToResource},
    {"rdwr"_4cc, "open"_4cc, additions::openForAccess},
    {"rdwr"_4cc, "clos"_4cc, additions::closeAccess},
    {"rdwr"_4cc, "geof"_4cc, additions::getEOF},
    {"rdwr"_4cc, "seof"_4cc, additions::setEOF},
    {"rdwr"_4cc, "read"_4cc, additions::readFileContents},
    {"rdwr"_4cc, "writ"_4cc, additions::writeFileContents},
    {"Jons"_4cc, "pClp"_4cc, additions::setTheClipboard},
    {"Jons"_4cc, "gClp"_4cc, additions::theClipboard},
    {"Jons"_4cc, "iClp"_4cc, additions::clipboardInfo},
    {"syso"_4cc, "nfo4"_4cc, additions::infoFor},
    {"ears"_4cc, "lfdr"_4cc, additions::listFolder},
    {"ears"_4cc, "lvol"_4cc, additions::listDisks},
    {"syso"_4cc, "beep"_4cc, additions::beep},
    {"syso"_4cc, "gtvl"_4cc, additions::getVolumeSettings},
    {"aevt"_4cc, "stvl"_4cc, additions::setVolume},
    {"syso"_4cc, "dlog"_4cc, additions::interact},
    {"syso"_4cc, "disA"_4cc, additions::interact},
    {"gtqp"_4cc, "chlt"_4cc, additions::interact},
    {"syso"_4cc, "stdf"_4cc, additions::interact},
    {"syso"_4cc, "stfl"_4cc, additions::interact},
    {"syso"_4cc, "nwfl"_4cc, additions::interact},
    {"syso"_4cc, "chcl"_4cc, additions::interact},
    {"syso"_4cc, "chur"_4cc, additions::interact},
    {"syso"_4cc, "ppcb"_4cc, additions::interact},
    {"syso"_4cc, "chra"_4cc, additions::chooseRemoteApplication},
    {"syso"_4cc, "notf"_4cc, additions::displayNotification},
    {"syso"_4cc, "ttos"_4cc, additions::say},
    {"syso"_4cc, "GMT "_4cc, additions::timeToGMT},
    {"fndr"_4cc, "gstl"_4cc, additions::systemAttribute},
    {"syso"_4cc, "sigt"_4cc, additions::systemInfo},
    {"syso"_4cc, "cpls"_4cc, additions::scriptingComponents},
    {"GURL"_4cc, "GURL"_4cc, additions::openLocation},
    {"aevt"_4cc, "mvol"_4cc, additions::mountVolume},
    {"fbcs"_4cc, "summ"_4cc, additions::summarize},
    {"syso"_4cc, "locS"_4cc, additions::localizedString},
};

} // namespace

void installStandardAdditions() {
    auto& manager = NSAppleEventManager::sharedAppleEventManager();
    for (const additions::CommandRow& row : kCommands)
        manager.setAdditionHandler(row.command, row.eventClass, row.eventID);
}

} // namespace quoddle

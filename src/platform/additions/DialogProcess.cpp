// SPDX-License-Identifier: MIT
#include "platform/additions/DialogProcess.h"

#include "platform/additions/Command.h"
#include "platform/additions/Interaction.h"
#include "platform/base/Text.h"

namespace quoddle::additions {

DialogProcess::DialogProcess(std::string program) : mProcess(std::move(program), HelperProcess::Ending::withUs) {}

OSErr DialogProcess::present(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    if (!hasDisplay())
        return static_cast<OSErr>(errAENoUserInteraction);
    AEDesc answered;
    switch (mProcess.ask(event, answered, context)) {
    case HelperProcess::Outcome::notFound:
        return fail(reply, errAEEventFailed,
                    u"Dialogs can’t be shown: the program " + utf16FromUTF8(mProcess.program()) +
                        u" wasn’t found. It belongs beside the program that runs the script, or in PATH.");
    case HelperProcess::Outcome::cancelled:
        return static_cast<OSErr>(userCanceledErr);
    case HelperProcess::Outcome::noDisplay:
        return static_cast<OSErr>(errAENoUserInteraction);
    case HelperProcess::Outcome::ended:
        return fail(reply, connectionInvalid, u"The program that shows dialogs ended before it had an answer.");
    case HelperProcess::Outcome::answered:
        break;
    }
    for (const AEItem& field : answered.fields())
        (void)reply.put(field.key, field.value);
    return noErr;
}

} // namespace quoddle::additions

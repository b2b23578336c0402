// SPDX-License-Identifier: MIT
// Dialogs shown by a process of their own: the program quoddle-dialogs. A script that is stopped ends the process and so the dialog.
#pragma once

#include "platform/additions/HelperProcess.h"

namespace quoddle::additions {

class DialogProcess {
public:
    explicit DialogProcess(std::string program = "quoddle-dialogs");

    /// An InteractionPresenter. Without a display: -1713, and nothing is started. A process that cannot be started, ends early or answers
    /// nonsense is an error with a text; the next call starts another one.
    OSErr present(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

private:
    HelperProcess mProcess;
};

} // namespace quoddle::additions

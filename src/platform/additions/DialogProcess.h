// SPDX-License-Identifier: MIT
// Shows dialogs in a process of their own, the program quoddle-dialogs. Stopping the script ends the process and with it the dialog.
#pragma once

#include "platform/additions/HelperProcess.h"

namespace quoddle::additions {

class DialogProcess {
public:
    explicit DialogProcess(std::string program = "quoddle-dialogs");

    /// An InteractionPresenter. Returns -1713 without a display and then starts nothing. A process that cannot be started, ends early or
    /// sends a malformed answer is an error with a message; the next call starts another one.
    OSErr present(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

private:
    HelperProcess mProcess;
};

} // namespace quoddle::additions

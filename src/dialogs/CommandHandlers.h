// SPDX-License-Identifier: MIT
// The handlers of the interactive commands that an applet answers itself. The dialog is a sheet of the applet's window when that is
// visible, and the command's event is suspended until the dialog has been answered.
// Main thread only, but for processCommand() and processEvent().
#pragma once

#include "platform/ae/NSAppleEventManager.h"
#include "platform/panels/CommandDialog.h"

#include <array>

namespace quoddle {

/// A command's event and the reply to it.
using WorkItem = std::array<NSAppleEventDescriptorRef, 2>;
using MakeDialog = CommandDialog (*)(const AEDesc& event, const Asker& asker);

/// Calls continueCommand() on the main thread and waits for its return, also while a modal panel runs. Any thread. `makeDialog` is the
/// command's.
void processCommand(const WorkItem& item, MakeDialog makeDialog);
/// Shows the dialog of the current Apple event when it is its turn, on the main thread. A fault in the parameters goes into the reply at
/// once.
void continueCommand(const WorkItem& item, MakeDialog makeDialog);

template<MakeDialog kMakeDialog>
class CommandHandler {
public:
    static constexpr MakeDialog makeDialog = kMakeDialog;

    /// Handles an event and fills its reply. Any thread.
    void processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent) {
        processCommand({event, replyEvent}, makeDialog);
    }
    void continueProcess(const WorkItem& item) { continueCommand(item, makeDialog); }
};

using DisplayDialogHandler = CommandHandler<displayDialogDialog>;
using DisplayAlertHandler = CommandHandler<displayAlertDialog>;
using ChooseFromListHandler = CommandHandler<chooseFromListDialog>;
using ChooseFileHandler = CommandHandler<chooseFileDialog>;
using ChooseFolderHandler = CommandHandler<chooseFolderDialog>;
using ChooseFileNameHandler = CommandHandler<chooseFileNameDialog>;

/// Does nothing and is not installed: applets do not answer "choose URL" themselves.
class ChooseURLHandler {
public:
    void processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent) {
        (void)event;
        (void)replyEvent;
    }
};

} // namespace quoddle

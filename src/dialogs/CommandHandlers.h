// SPDX-License-Identifier: MIT
// The handlers of the interactive commands that an applet answers itself: the dialog hangs on its window as a sheet when that is visible,
// and the command's event is suspended until the dialog has been answered.
// Main thread only, but for processEvent().
#pragma once

#include "platform/ae/NSAppleEventManager.h"
#include "platform/panels/CommandDialog.h"

#include <array>

namespace quoddle {

/// A command's event and the reply to it.
using WorkItem = std::array<NSAppleEventDescriptorRef, 2>;
using MakeDialog = CommandDialog (*)(const AEDesc& event, const Asker& asker);

/// On the main thread now, or there while this thread waits; also while a modal panel runs. `makeDialog` is of the command.
void processCommand(const WorkItem& item, MakeDialog makeDialog);
/// For the handler of the current Apple event, on the main thread: shows the dialog when it is its turn. What is wrong with the parameters
/// goes into the reply at once.
void continueCommand(const WorkItem& item, MakeDialog makeDialog);

template<MakeDialog kMakeDialog>
class CommandHandler {
public:
    static constexpr MakeDialog makeDialog = kMakeDialog;

    /// Any thread.
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

/// "choose URL" is not answered by the applet: the handler does nothing and is not installed.
class ChooseURLHandler {
public:
    void processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent) {
        (void)event;
        (void)replyEvent;
    }
};

} // namespace quoddle

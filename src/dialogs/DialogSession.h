// SPDX-License-Identifier: MIT
// The common course of a dialog command once its parameters have been read: the event is suspended, the dialog shown when it is its turn,
// the answer put into the reply, the event resumed.
// One decision: the applet shows one dialog at a time. Which one may be answered is decided here and not by what the toolkit lets through,
// for an assistive technology can press what a user cannot click.
// Main thread only.
#pragma once

#include "platform/ae/NSAppleEventManager.h"
#include "platform/appkit/NSWindow.h"

namespace quoddle {

/// How one dialog is shown and ended.
struct DialogForm {
    /// As a sheet; the completion comes when it has ended, with its return code.
    std::function<void(NSWindow& window, NSWindow::SheetCompletion completion)> beginSheet;
    /// As a window; returns the return code.
    std::function<int()> runModal;
    /// Ends either form with the code.
    std::function<void(int returnCode)> end;
    /// Seconds from when it is shown until `cancelAfterGivingUp`; 0 and less: never.
    double givingUpAfter = -1;
    std::function<void()> cancelAfterGivingUp;
};

/// Puts what the return code means into the reply.
using DialogAnswer = std::function<void(int returnCode, AEDesc& reply)>;

/// For the handler of the current Apple event, when the dialog is ready. What the functions hold is held until the reply has been sent. A
/// sheet is begun at once and ends later; without a visible window, this returns when the dialog has been answered; while another dialog is
/// up it returns at once.
void beginDialogSession(DialogForm form, DialogAnswer answer);

/// The application ends: the events of dialogs that have not been shown yet are answered with an error.
void dropWaitingDialogs();

/// For the end of the session, when no user will answer: takes the dialog away that is up; its command and those that wait are answered
/// with -128. May return before the dialog has gone.
void cancelDialogs();

/// The applet's window, visible or not; null when it has none.
NSWindow* mainWindow();

} // namespace quoddle

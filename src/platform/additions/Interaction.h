// SPDX-License-Identifier: MIT
// Commands that a person answers: display dialog, choose file and their like.
//
// Decision: all of them go through one presenter, which the program may replace. Without a replacement dialogs are shown by a process of
// their own (DialogProcess.h), so that a program that only runs scripts loads no windows. How a
// dialog looks and what its parameters mean is not known here.
#pragma once

#include "platform/ae/NSAppleEventManager.h"

#include <functional>

namespace quoddle {

/// Shows what the event asks for, waits for the person and fills the reply. Called on the thread of the script, by several at once where
/// several scripts run. Ends within 100 ms, with -128, when the context says that the script was cancelled; answers -1713 where nobody can
/// be asked.
using InteractionPresenter = std::function<OSErr(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context)>;

/// Any thread, before the first script. An empty one stands for the process of its own.
void setInteractionPresenter(InteractionPresenter presenter);

/// Whether the environment names a display, on which somebody could be asked. It may be one that does not answer.
bool hasDisplay();

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Commands that a user answers: display dialog, choose file and the like.
//
// Decision: all of them go through one presenter, which a program may replace. By default a process of its own shows the dialogs
// (DialogProcess.h), so that a program that only runs scripts loads no windows. Presenters know the dialogs' looks and parameters; this
// layer does not.
#pragma once

#include "platform/ae/NSAppleEventManager.h"

#include <functional>

namespace quoddle {

/// Shows what the event asks for, waits for the user and fills the reply. Called on the script's thread; several scripts may call at the
/// same time. Returns -128 within 100 ms when the context says that the script was cancelled, and -1713 when no user can be asked.
using InteractionPresenter = std::function<OSErr(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context)>;

/// Any thread, before the first script runs. An empty presenter restores the default.
void setInteractionPresenter(InteractionPresenter presenter);

/// Whether the environment names a display. The display may still not answer.
bool hasDisplay();

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The standard commands for scripts of this process: this process shows the dialog while the script's thread waits.
#pragma once

#include "platform/ae/NSAppleEventManager.h"

namespace quoddle {

/// Performs a standard command. Any thread; when it is the main thread, events go on being processed while it waits. Answers -128 within
/// 100 ms, and the dialog is closed, when the context says that the script was cancelled; -609 when the application is ending.
OSErr presentOnMainThread(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context);

} // namespace quoddle

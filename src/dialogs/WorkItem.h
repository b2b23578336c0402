// SPDX-License-Identifier: MIT
// What a dialog command works on, and its way to the main thread.
#pragma once

#include "platform/ae/NSAppleEventManager.h"
#include "platform/panels/CommandError.h"

#include <array>

namespace quoddle {

/// The command's event and the reply to it.
using WorkItem = std::array<NSAppleEventDescriptorRef, 2>;

/// On the main thread now, or there while this thread waits; also while a modal panel runs.
void performOnMainThread(const WorkItem& item, const std::function<void(const WorkItem& item)>& continueProcess);

/// Into the reply that came with the event.
void writeError(const CommandError& error, const WorkItem& item);

} // namespace quoddle

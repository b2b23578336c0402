// SPDX-License-Identifier: MIT
// The commands that a person answers, as any script may send them. They know neither scripts nor applets.
// Main thread only.
#pragma once

#include "platform/ae/AEDesc.h"

#include <cstdint>
#include <functional>

namespace quoddle {

/// Performs a command. The completion gets the filled reply, once, perhaps before this returns; "errn" -1708 for a command that is not
/// known here. Answers the number of the dialog in the shared queue, 0 without a dialog.
std::uint64_t performStandardCommand(const AEDesc& event, const AEDesc& reply, std::function<void(const AEDesc& reply)> completion);

} // namespace quoddle

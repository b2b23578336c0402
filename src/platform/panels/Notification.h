// SPDX-License-Identifier: MIT
// The command "display notification": the desktop's notification service shows the notification in its own way.
// Main thread only.
#pragma once

#include "platform/ae/AEDesc.h"

#include <functional>

namespace quoddle {

/// Sends a notification. The completion gets the reply, later or at once: without a result, or with -1713 when no service shows it.
void sendNotification(const AEDesc& event, const AEDesc& reply, std::function<void(const AEDesc& reply)> completion);

} // namespace quoddle

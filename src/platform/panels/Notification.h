// SPDX-License-Identifier: MIT
// display notification: through the desktop's notification service, which shows it in its own way.
// Main thread only.
#pragma once

#include "platform/ae/AEDesc.h"

#include <functional>

namespace quoddle {

/// The completion gets the reply, later or at once: without a result, or with -1713 when there is no service that would show it.
void sendNotification(const AEDesc& event, const AEDesc& reply, std::function<void(const AEDesc& reply)> completion);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Sends an event to another process and waits for its reply. Connections are kept for further events. Each carries one event at a time, so
// the waiting thread reads its own reply without help from another thread.
#pragma once

#include "platform/ae/AESendMessage.h"

namespace quoddle {

/// As AESendMessage() for a process that is known. -600 when it does not listen, -609 when it ends before it has answered.
OSStatus AESendToProcess(std::int32_t processID, const AEDesc& event, AEDesc* reply, AESendMode sendMode, std::int32_t timeoutInTicks,
                         const AESendOptions& options);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Launches an applet for an event and waits until it listens.
#pragma once

#include "platform/ae/AESendMessage.h"
#include "platform/base/Result.h"

#include <chrono>

namespace quoddle {

/// Why a process runs an applet: a user has started it (none), or another process has, for an event that it then sends. The event comes in
/// addition to the applet's run or instead of it.
enum class AELaunchReason { none, event, eventInsteadOfRun };

/// The reason for which this process was launched. Called once, before there are other threads; processes that this one starts do not see
/// the reason.
AELaunchReason AETakeLaunchReason();

/// The number of the process that listens for the bundle; another one than was launched here when another sender was faster. -600 when the
/// applet cannot be started or ends before it listens; -1712, -128 as of AESendMessage. The applet goes on when this process ends.
Result<std::int32_t, OSStatus> AELaunchApplication(const std::string& bundlePath, AELaunchReason reason,
                                                   std::chrono::steady_clock::time_point deadline, const AESendOptions& options);

} // namespace quoddle

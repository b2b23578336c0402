// SPDX-License-Identifier: MIT
// Starts an applet that is to get an event and waits until it listens.
#pragma once

#include "platform/ae/AESendMessage.h"
#include "platform/base/Result.h"

#include <chrono>

namespace quoddle {

/// Why a process runs an applet: somebody has started it; or another process has, for an event that it then sends, which comes beside the
/// applet's run or takes its place.
enum class AELaunchReason { none, event, eventInsteadOfRun };

/// What this process was launched for. Once, before there are other threads: it leaves no trace for processes that this one starts.
AELaunchReason AETakeLaunchReason();

/// The number of the process that listens for the bundle: the one that runs already when another sender was faster. -600 when it cannot be
/// started or ends before it listens; -1712, -128 as AESendMessage. The applet does not belong to this process: it goes on when this one
/// ends.
Result<std::int32_t, OSStatus> AELaunchApplication(const std::string& bundlePath, AELaunchReason reason,
                                                   std::chrono::steady_clock::time_point deadline, const AESendOptions& options);

} // namespace quoddle

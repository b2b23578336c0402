// SPDX-License-Identifier: MIT
// The procedures that every QXOSAComponent installs in its scripting component. Their reference constant is the component's address; one
// that is no longer alive is recognised and then the procedures act as if there were no deadline, delegate or cancellation.
// They run on the thread that executes the script, without the scripting component's lock. Statuses are cut to 16 bits.
#pragma once

#include "platform/osa/OSATypes.h"

namespace quoddle {

/// The place to yield, to cancel and to time out.
OSErr OSAActiveCallback(void* component);
/// Every event that the script sends. Here it is sent on the calling thread, which waits and stays cancellable.
OSErr OSASendCallback(const AEDesc& event, AEDesc* reply, AESendMode sendMode, AESendPriority sendPriority, std::int32_t timeOutInTicks,
                      AEIdleProc idleProc, AEFilterProc filterProc, void* component);
/// An event that the script continues: dispatched to the application's handlers on the main thread.
OSErr OSAResumeCallback(const AEDesc& event, AEDesc* reply, void* component);

} // namespace quoddle

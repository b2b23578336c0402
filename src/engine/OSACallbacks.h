// SPDX-License-Identifier: MIT
// The procedures that every QXOSAComponent installs in its scripting component. Their reference constant is the component's address. When
// that component does not exist any more, they act as if there were no deadline, delegate or cancellation. They run on the thread that
// executes the script, without the scripting component's lock. Statuses are cut to 16 bits.
#pragma once

#include "platform/osa/OSATypes.h"

namespace quoddle {

class QXOSAComponent;

/// Lets other work run, and ends a script that is cancelled or past its deadline.
OSErr OSAActiveCallback(void* component);
/// Sends every event of the script. An event whose mode says anything about a reply (none, queued or waited for) goes through the shared
/// send queue (BackgroundSend.h), while this thread waits and stays cancellable; any other event is sent on this thread.
OSErr OSASendCallback(const AEDesc& event, AEDesc* reply, AESendMode sendMode, AESendPriority sendPriority, std::int32_t timeOutInTicks,
                      AEIdleProc idleProc, AEFilterProc filterProc, void* component);
/// Handles an event that the script continues: it is dispatched to the application's handlers on the main thread.
OSErr OSAResumeCallback(const AEDesc& event, AEDesc* reply, void* component);

/// Resets the component's cancellation when it takes effect or a new run begins. Does nothing when the delegate decides about the script on
/// this thread, because the flag is then meant for scripts of other threads.
void takeBackCancellation(QXOSAComponent& component);
/// Whether the run is cancelled by the delegate, the component's flag, its operation or the calling thread.
bool isRunCancelled(const QXOSAComponent& component);
/// Tell the delegate that others may work now, and that a script on the main thread waits for a reply. The delegate's exceptions are
/// logged, because the scripting component could not handle them.
void yieldToDelegate(const QXOSAComponent& component);
void tellOfWaiting(const QXOSAComponent& component);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The procedures that every QXOSAComponent installs in its scripting component. Their reference constant is the component's address; one
// that is no longer alive is recognised and then the procedures act as if there were no deadline, delegate or cancellation.
// They run on the thread that executes the script, without the scripting component's lock. Statuses are cut to 16 bits.
#pragma once

#include "platform/osa/OSATypes.h"

namespace quoddle {

class QXOSAComponent;

/// The place to yield, to cancel and to time out.
OSErr OSAActiveCallback(void* component);
/// Every event that the script sends. One that asks for a reply, or says that it wants none, goes through the shared send queue
/// (BackgroundSend.h) while this thread waits and stays cancellable; any other is sent on this thread.
OSErr OSASendCallback(const AEDesc& event, AEDesc* reply, AESendMode sendMode, AESendPriority sendPriority, std::int32_t timeOutInTicks,
                      AEIdleProc idleProc, AEFilterProc filterProc, void* component);
/// An event that the script continues: dispatched to the application's handlers on the main thread.
OSErr OSAResumeCallback(const AEDesc& event, AEDesc* reply, void* component);

/// Takes back the component's cancellation, when somebody acts on it or a new run begins. One for a script of another thread stays.
void takeBackCancellation(QXOSAComponent& component);
/// By its own flag, its operation or the calling thread.
bool isRunCancelled(const QXOSAComponent& component);
/// Tells the delegate that the script has come to a place where others may work; and that a script on the main thread waits for a reply.
/// The delegate's exceptions end here: the scripting component could not take them.
void yieldToDelegate(const QXOSAComponent& component);
void tellOfWaiting(const QXOSAComponent& component);

} // namespace quoddle

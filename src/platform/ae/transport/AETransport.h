// SPDX-License-Identifier: MIT
// Apple events between the processes of one user: connects the parts of this folder with AESendMessage.
#pragma once

#include "platform/ae/transport/AERunningApplications.h"

namespace quoddle {

/// Makes AESendMessage reach other processes and launch applications that do not run. For every program that sends. "running", "name" and
/// "id" of an application are answered without launching it; "quit" to an application that does not run does nothing.
void AEInstallTransport();

/// Lets this process take events under the given name and be found by others. Called once, on the main thread, when the handlers are
/// installed. After a failure, whose reason is the file status, the application works on without taking events.
OSStatus AEListen(const AERunningApplication& application);
/// Called before AEListen() by an application that was launched for an event. AEIsAnswered() then waits for that event.
void AEExpectEvent();
/// For an application that ends because its work is done: whether all senders have their answers and the expected event has come. To be
/// asked again whenever wakeWaits() is called, until it is true. Events that arrive after the first call are not waited for, so that the
/// application does end. Main thread.
/// `isEndCertain` says that nothing keeps the application from ending any more; the application is then not found by others, which launch
/// it anew.
bool AEIsAnswered(bool isEndCertain);
/// Called when the application ends: no more events are taken, and senders that wait for an answer get -609.
void AEStopListening();

} // namespace quoddle

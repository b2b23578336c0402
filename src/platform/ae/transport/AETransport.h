// SPDX-License-Identifier: MIT
// Apple events between the processes of one user: puts the parts of this folder together behind AESendMessage.
#pragma once

#include "platform/ae/transport/AERunningApplications.h"

namespace quoddle {

/// From now on AESendMessage reaches other processes, and launches applications that are to get an event and do not run. Any program that
/// sends. "running", "name" and "id" of an application are answered without launching it; "quit" to one that does not run does
/// nothing.
void AEInstallTransport();

/// This process takes events under the given name from now on, and is found by others. Once, on the main thread, when its handlers are
/// installed. What cannot be done leaves the application deaf, not dead: a file status tells why.
OSStatus AEListen(const AERunningApplication& application);
/// Before AEListen(), by an application that was launched for an event which is on its way: it is waited for at the end.
void AEExpectEvent();
/// For an application that ends because its work is done: whether whoever has sent something has the answer, and the expected event has
/// come. To be asked again whenever wakeWaits() is called, until it is true. Nothing that comes after the first question is waited for, so
/// that it does end. Main thread.
/// `isEndCertain`: nothing keeps the application from ending any more, so whoever looks for it from now on launches it anew.
bool AEIsAnswered(bool isEndCertain);
/// When the application ends: nothing more is taken in, and whoever waits for an answer gets -609.
void AEStopListening();

} // namespace quoddle

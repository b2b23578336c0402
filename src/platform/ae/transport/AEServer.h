// SPDX-License-Identifier: MIT
// Takes the events that other processes of this user send, hands them to this process's handlers and sends the replies back.
//
// Decision: one thread of its own waits for all connections, so that a caller who stalls or floods costs the application nothing; replies
// are written by the thread that answers, and only what a socket does not take at once is left to the server's. A connection that sends
// faster than its events are handled is not read until they are. Events for which the application has no handler are answered with -1708:
// additions work for their own process only.
#pragma once

#include "platform/base/OSStatus.h"

#include <memory>
#include <string>

namespace quoddle {

class AEServer {
public:
    AEServer();
    /// Every event not yet answered is broken off: its sender gets -609.
    ~AEServer();

    /// Listens at PID.sock in `directory`. Once, on the main thread, where the server must be destroyed, too. A file status on failure; -42
    /// when there are too many open files.
    OSStatus start(const std::string& directory);

    /// For an application that wants to end: whether the answers to all that had been sent when this was first asked are on their way. What
    /// comes later is handled, but not waited for. Asked again after it was true, it begins anew. wakeWaits() is called when it becomes
    /// true. Main thread.
    bool isAnswered();
    /// Whether there has been any event. wakeWaits() is called when the first one comes.
    bool hasReceived() const;

private:
    class Loop;
    std::shared_ptr<Loop> mLoop;
};

} // namespace quoddle

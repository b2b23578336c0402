// SPDX-License-Identifier: MIT
// Takes events from the user's other processes, passes them to this process's handlers and sends the replies back.
//
// Decision: the main thread's event loop serves all connections or, without one, a thread of the server; one slow or flooding caller cannot
// block the others. Replies are written by the thread that answers; only what a socket does not take at once is left to the serving thread.
// A connection with too many unanswered events is not read until some are answered. Events without an application handler are answered with
// -1708: additions work for their own process only.
#pragma once

#include "platform/base/OSStatus.h"

#include <memory>
#include <string>

namespace quoddle {

class AEServer {
public:
    AEServer();
    /// Breaks off all unanswered events: their senders get -609.
    ~AEServer();

    /// Listens at PID.sock in `directory`. Called once, on the main thread, where the server must also be destroyed. A file status on
    /// failure; -42 when too many files are open.
    OSStatus start(const std::string& directory);

    /// For an application that wants to end: whether all events that had been sent at the first call have been answered. Later events are
    /// handled, but not waited for. After it has returned true, the next call is a first call again. wakeWaits() is called when the result
    /// becomes true. Main thread.
    bool isAnswered();
    /// Whether any event has arrived. wakeWaits() is called when the first one does.
    bool hasReceived() const;

private:
    class Loop;
    std::shared_ptr<Loop> mLoop;
};

} // namespace quoddle

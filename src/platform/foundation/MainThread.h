// SPDX-License-Identifier: MIT
// The way back to the main thread: work handed over from any thread, run by the main event loop in the order in which it came.
// One decision: after close() nothing is run any more and nobody waits, so that a worker never dead-locks with an application that is
// ending. Nested event loops (modal sessions) serve it like the main loop.
#pragma once

#include <functional>

namespace quoddle::MainThread {

/// Whether the caller is on the thread of the application object; true as well before there is one.
bool isCurrent();

/// Any thread; returns at once. Dropped after close().
void dispatchAsync(std::function<void()> work);

/// Any thread; from the main thread it runs directly. Returns when the work has been done.
/// False: the application is ending and the work was dropped. An exception that leaves the work is logged and dropped.
bool dispatchSync(std::function<void()> work);

/// Main thread, when the event loop has ended: drops what waits, releases every waiting caller.
void close();

/// Main thread, when there is an application object: makes ready, also after close() (tests run several applications in one process).
void open();

} // namespace quoddle::MainThread

// SPDX-License-Identifier: MIT
// Runs work from other threads on the main thread, in the order in which it was dispatched.
// Decision: after close() no work is run and no caller waits, so that a worker cannot deadlock with an application that is ending. Nested
// event loops (modal sessions) run dispatched work like the main loop.
#pragma once

#include <functional>

namespace quoddle::MainThread {

/// Whether the caller is on the thread of the application object. True as long as there is no application object.
bool isCurrent();

/// Any thread; returns at once. The work is dropped after close().
void dispatchAsync(std::function<void()> work);

/// Any thread; on the main thread the work is run directly. Returns true when the work has been done, false when it was dropped because the
/// application is ending. An exception that leaves the work is logged and dropped.
bool dispatchSync(std::function<void()> work);

/// Main thread, after the event loop has ended: drops the queued work and releases every waiting caller.
void close();

/// Main thread, once there is an application object: accepts work, also after an earlier close() (tests run several applications in one
/// process).
void open();

} // namespace quoddle::MainThread

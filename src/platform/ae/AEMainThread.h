// SPDX-License-Identifier: MIT
// How this layer reaches the main thread: through functions that the application framework installs, because this layer has no event loop.
// Without them every thread counts as the main thread, which suits programs with a single thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace quoddle {

struct AEMainThread {
    /// Whether the caller is on the main thread. May be called on any thread.
    std::function<bool()> isCurrent;
    /// Runs the work later on the main thread, in the order of the calls, also during modal sessions. May be called on any thread. Work
    /// that cannot run any more is destroyed.
    std::function<void(std::function<void()> work)> post;
    /// Lets posted work and user events run, for at most the slice; may return earlier. Called on the main thread only.
    std::function<void(std::chrono::milliseconds slice)> processEvents;
    /// Calls `ready` on the main thread whenever the descriptor is readable, also during modal sessions, until the returned object is
    /// destroyed. Called on the main thread only. May be empty.
    std::function<std::shared_ptr<void>(int descriptor, std::function<void()> ready)> watch;
};

/// Called once, before the first event; an AEMainThread without functions removes the installed one.
void AESetMainThread(AEMainThread mainThread);

bool AEIsMainThread();
/// Whether this is the main thread and it has an event loop that must be kept running.
bool AEHasMainThreadEvents();
/// Runs the work at once when no functions are installed; else later, even on the main thread.
void AEPostToMainThread(std::function<void()> work);
/// On the main thread: lets posted work run for at most the slice, and returns true. Returns false at once on other threads and without an
/// event loop.
bool AEProcessMainThreadEvents(std::chrono::milliseconds slice);
/// Null without a `watch` function and on other threads than the main one.
std::shared_ptr<void> AEWatchDescriptor(int descriptor, std::function<void()> ready);

} // namespace quoddle

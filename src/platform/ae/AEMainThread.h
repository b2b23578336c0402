// SPDX-License-Identifier: MIT
// How this layer reaches the main thread: functions that the application framework puts in, since there is no event loop here.
// Without them every thread counts as the main thread, which suits programs that have only one.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace quoddle {

struct AEMainThread {
    /// Whether the caller is on the main thread. Any thread.
    std::function<bool()> isCurrent;
    /// Runs the work on the main thread, later, in order, also while a modal session runs. Any thread. Work that can no longer run is
    /// destroyed.
    std::function<void(std::function<void()> work)> post;
    /// Main thread only: lets posted work and user events run, waiting for them no longer than the slice; may return earlier.
    std::function<void(std::chrono::milliseconds slice)> processEvents;
    /// Main thread only: calls `ready` there whenever the descriptor can be read, also while a modal session runs, until what it answers is
    /// destroyed. May be empty.
    std::function<std::shared_ptr<void>(int descriptor, std::function<void()> ready)> watch;
};

/// Installed once, before the first event; an empty one takes it away again.
void AESetMainThread(AEMainThread mainThread);

bool AEIsMainThread();
/// Whether this is the main thread and it has an event loop to be kept going.
bool AEHasMainThreadEvents();
/// Runs at once when none was installed; otherwise later, even when this is the main thread.
void AEPostToMainThread(std::function<void()> work);
/// Main thread: lets posted work run for the slice and answers true; false, at once, on other threads or without an event loop.
bool AEProcessMainThreadEvents(std::chrono::milliseconds slice);
/// Null when nobody can watch, or this is not the main thread.
std::shared_ptr<void> AEWatchDescriptor(int descriptor, std::function<void()> ready);

} // namespace quoddle

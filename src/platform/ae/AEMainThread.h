// SPDX-License-Identifier: MIT
// How this layer reaches the main thread: three functions that the application framework puts in, since there is no event loop here.
// Without them every thread counts as the main thread, which suits programs that have only one.
#pragma once

#include <chrono>
#include <functional>

namespace quoddle {

struct AEMainThread {
    /// Whether the caller is on the main thread. Any thread.
    std::function<bool()> isCurrent;
    /// Runs the work on the main thread, later, in order, also while a modal session runs. Any thread. Work that can no longer run is
    /// destroyed.
    std::function<void(std::function<void()> work)> post;
    /// Main thread only: lets posted work and user events run, waiting for them no longer than the slice; may return earlier.
    std::function<void(std::chrono::milliseconds slice)> processEvents;
};

/// Installed once, before the first event; an empty one takes it away again.
void AESetMainThread(AEMainThread mainThread);

bool AEIsMainThread();
/// Runs at once when this is the main thread or none was installed.
void AEPostToMainThread(std::function<void()> work);
/// Waits until `done` answers true, looking every few milliseconds, and keeps the main thread alive when called on it.
/// False when `giveUp` (may be empty) answered true or the deadline passed first.
bool AEWaitUntil(const std::function<bool()>& done, const std::function<bool()>& giveUp, std::chrono::steady_clock::time_point deadline);

} // namespace quoddle

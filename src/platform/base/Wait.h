// SPDX-License-Identifier: MIT
// Waits that other threads can end. A thread sleeps until what it waits for has happened, or until there may be a reason to give up.
// Decision: the waiting thread itself checks whether it is cancelled; code that cancels something calls wakeWaits() and need not know who
// waits for what. No pause is long, so a cancellation without a wakeWaits() costs a moment and never a hang.
#pragma once

#include <chrono>
#include <memory>
#include <poll.h>
#include <span>

namespace quoddle {

/// Makes every wait of the process check again. May be called on any thread, but not in a signal handler.
void wakeWaits();

/// Wakes all waits at a given time, for cancellations that depend only on the clock.
class WaitAlarm {
public:
    using Time = std::chrono::steady_clock::time_point;
    /// Without a time the alarm wakes nobody.
    WaitAlarm() = default;
    explicit WaitAlarm(Time time) { set(time); }
    ~WaitAlarm();
    WaitAlarm(const WaitAlarm&) = delete;
    WaitAlarm& operator=(const WaitAlarm&) = delete;

    /// Replaces the earlier time. May be called on any thread.
    void set(Time time);
};

/// Ends the pauses of one thread. May be used on any thread, also when that thread no longer waits or has ended.
class Waker {
public:
    virtual ~Waker() = default;
    virtual void wake() = 0;
};

class ThreadWaker;

/// One wait of the thread that makes it. Used in a loop: check whether the wait is over or cancelled, then pause. A wake between the check
/// and the pause is not lost, nor is one that comes while the check itself waits for something else.
class Wait {
public:
    Wait();
    ~Wait();
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;

    /// The calling thread's waker; never null.
    static std::shared_ptr<Waker> waker();

    static constexpr std::size_t kMaximumDescriptors = 3;
    /// Sleeps until a descriptor is ready, the thread is woken, a signal comes or the time has come; at most a second. Returns the number
    /// of ready descriptors, whose `revents` are set; descriptors below 0 are ignored. -1, with errno set, when the system cannot wait for
    /// them. Sleeps at most a hundredth of a second when the process had no descriptor left for the wakes.
    int pause(std::chrono::steady_clock::time_point until, std::span<pollfd> descriptors = {});

    /// For a thread that waits in an event loop of another kind: a descriptor that is readable from a wake of the thread until forget().
    /// Below 0 when the process had no descriptor left.
    int descriptor() const;
    void forget();

private:
    const std::shared_ptr<ThreadWaker> mThread;
    bool mHasForgotten = false; ///< forget() has taken a wake that may have been meant for an enclosing wait
};

} // namespace quoddle

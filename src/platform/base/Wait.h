// SPDX-License-Identifier: MIT
// Waits that others can end. A thread sleeps until what it waits for has happened, or until there may be a reason to give up.
// One decision: the thread that waits asks for itself whether it is cancelled; code that cancels something calls wakeWaits() and need not
// know who waits, nor for what. A pause never lasts long, so that a cancellation that nobody announced costs a moment and no hang.
#pragma once

#include <chrono>
#include <memory>
#include <poll.h>
#include <span>

namespace quoddle {

/// Every wait of the process looks again. Any thread, but no signal handler.
void wakeWaits();

/// Wakes all waits at a time: for a cancellation that only a clock brings.
class WaitAlarm {
public:
    using Time = std::chrono::steady_clock::time_point;
    /// Wakes nobody as long as no time is set.
    WaitAlarm() = default;
    explicit WaitAlarm(Time time) { set(time); }
    ~WaitAlarm();
    WaitAlarm(const WaitAlarm&) = delete;
    WaitAlarm& operator=(const WaitAlarm&) = delete;

    /// In place of the time before. Any thread.
    void set(Time time);
};

/// Ends the pauses of one thread. Any thread, also when that thread does not wait any more, or has ended.
class Waker {
public:
    virtual ~Waker() = default;
    virtual void wake() = 0;
};

class ThreadWaker;

/// For the thread that has made it, which uses it in a loop: look whether the wait is over or cancelled, then pause. What wakes it between
/// the look and the pause is not lost, nor is what comes while the look itself waits for something else.
class Wait {
public:
    Wait();
    ~Wait();
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;

    /// Of the calling thread; never null.
    static std::shared_ptr<Waker> waker();

    static constexpr std::size_t kMaximumDescriptors = 3;
    /// Sleeps until one of the descriptors is ready, the thread is woken, a signal comes, or the time has come; a second at most. Answers
    /// how many descriptors are ready, as their `revents` say, those below 0 left out; -1, with errno set, when there is no waiting for
    /// them. Where the process had no descriptor left for the wake, it sleeps a hundredth of a second at most.
    int pause(std::chrono::steady_clock::time_point until, std::span<pollfd> descriptors = {});

    /// For a thread that waits in an event loop of another make: readable when the thread is woken, until forget(). Below 0 when the
    /// process had no descriptor left.
    int descriptor() const;
    void forget();

private:
    const std::shared_ptr<ThreadWaker> mThread;
    bool mHasForgotten = false; ///< a wake, which may have been meant for a wait around this one
};

} // namespace quoddle

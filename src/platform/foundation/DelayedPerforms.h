// SPDX-License-Identifier: MIT
// Calls that the main run loop makes after a delay and that can be withdrawn by target and selector.
// Decision: time comes from a replaceable Clock, so that a test of an hour of idle calls takes a millisecond.
// Main thread only. Targets are not kept alive: a target withdraws its calls before it is destroyed.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QString>

namespace quoddle {

/// Tells the time and wakes its owner. Seconds run from any fixed moment and never go back.
class Clock {
public:
    virtual ~Clock() = default;
    virtual double now() const = 0;
    /// Asks for one wake-up instead of any asked for before. It comes on the main thread, never before `time` and never from inside this
    /// call.
    virtual void wakeAt(double time) = 0;
    /// Called at each wake-up. The clock's owner sets it once.
    std::function<void()> onWake;

    /// The clock of the machine (a timer of the main event loop).
    static std::unique_ptr<Clock> system();
};

class DelayedPerforms {
public:
    explicit DelayedPerforms(std::unique_ptr<Clock> clock = Clock::system());
    ~DelayedPerforms();
    DelayedPerforms(const DelayedPerforms&) = delete;
    DelayedPerforms& operator=(const DelayedPerforms&) = delete;

    /// A negative delay counts as 0; the call is never made before this returns. Calls with equal times are made in the order of the
    /// requests.
    void perform(const void* target, const QString& selector, std::function<void()> call, double afterDelay);
    /// The clock's time in seconds.
    double now() const { return mClock->now(); }
    /// An empty selector withdraws every call of the target.
    void cancelPreviousPerformRequests(const void* target, const QString& selector = {});
    int pendingCount() const { return static_cast<int>(mPending.size()); }

private:
    struct Request {
        double time;
        const void* target;
        QString selector;
        std::function<void()> call;
    };
    void performDue();
    void scheduleWakeUp();

    std::unique_ptr<Clock> mClock;
    std::vector<Request> mPending; // sorted by time
};

} // namespace quoddle

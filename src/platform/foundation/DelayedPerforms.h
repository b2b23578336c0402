// SPDX-License-Identifier: MIT
// Calls that the main run loop makes after a delay and that can be withdrawn by target and selector.
// One decision: time comes from a Clock that can be replaced, so that an hour of idle calls is tested in a millisecond.
// Main thread only. It holds no target alive: whoever ends withdraws its calls.
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
    /// Replaces the previous wish. The wake-up comes on the main thread, never before `time`, never from inside this call.
    virtual void wakeAt(double time) = 0;
    /// Set once by the owner of the clock's wake-ups.
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

    /// A negative delay counts as 0; the call is never made directly. Equal times are kept in order.
    void perform(const void* target, const QString& selector, std::function<void()> call, double afterDelay);
    /// Seconds of the clock.
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
    std::vector<Request> mPending; // by time
};

} // namespace quoddle

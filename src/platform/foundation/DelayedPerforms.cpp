// SPDX-License-Identifier: MIT
#include "platform/foundation/DelayedPerforms.h"

#include "platform/foundation/MainThread.h"

#include <algorithm>

#include <QElapsedTimer>
#include <QTimer>

namespace quoddle {

namespace {

class SystemClock final : public Clock {
public:
    SystemClock() {
        mElapsed.start();
        mTimer.setSingleShot(true);
        mTimer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&mTimer, &QTimer::timeout, [this] { onWake(); });
    }
    double now() const override { return static_cast<double>(mElapsed.nsecsElapsed()) / 1e9; }
    void wakeAt(double time) override {
        // A timer takes at most 2^31 ms. Waking too early is harmless, because the owner then asks for another wake-up.
        const double delay = std::clamp((time - now()) * 1000 + 0.999, 0.0, 1e9);
        mTimer.start(static_cast<int>(delay));
    }

private:
    QElapsedTimer mElapsed;
    QTimer mTimer;
};

} // namespace

std::unique_ptr<Clock> Clock::system() {
    return std::make_unique<SystemClock>();
}

DelayedPerforms::DelayedPerforms(std::unique_ptr<Clock> clock) : mClock(std::move(clock)) {
    mClock->onWake = [this] { performDue(); };
}

DelayedPerforms::~DelayedPerforms() = default;

void DelayedPerforms::perform(const void* target, const QString& selector, std::function<void()> call, double afterDelay) {
    Q_ASSERT(MainThread::isCurrent());
    const double time = mClock->now() + std::max(0.0, afterDelay);
    auto place =
        std::upper_bound(mPending.begin(), mPending.end(), time, [](double t, const Request& request) { return t < request.time; });
    mPending.insert(place, {time, target, selector, std::move(call)});
    scheduleWakeUp();
}

void DelayedPerforms::cancelPreviousPerformRequests(const void* target, const QString& selector) {
    Q_ASSERT(MainThread::isCurrent());
    std::erase_if(mPending,
                  [&](const Request& request) { return request.target == target && (selector.isEmpty() || request.selector == selector); });
}

void DelayedPerforms::performDue() {
    // Only requests that are due now are performed: a call that requests itself again without delay must not starve the event loop.
    const double now = mClock->now();
    auto due = static_cast<std::size_t>(
        std::count_if(mPending.begin(), mPending.end(), [now](const Request& request) { return request.time <= now; }));
    while (due-- > 0 && !mPending.empty() && mPending.front().time <= now) {
        auto call = std::move(mPending.front().call);
        mPending.erase(mPending.begin());
        call(); // may add and withdraw requests
    }
    scheduleWakeUp();
}

void DelayedPerforms::scheduleWakeUp() {
    if (!mPending.empty())
        mClock->wakeAt(mPending.front().time);
}

} // namespace quoddle

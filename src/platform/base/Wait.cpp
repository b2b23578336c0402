// SPDX-License-Identifier: MIT
#include "platform/base/Wait.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cassert>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <mutex>
#include <sys/eventfd.h>
#include <unistd.h>
#include <vector>

namespace quoddle {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBlindPause(10); // for a thread without an eventfd, which nobody can wake

/// The longest pause; 1 s. Tests set a longer one, so that a missing wake makes them fail instead of passing after a second.
std::chrono::seconds longestPause() {
    static const std::chrono::seconds longest = [] {
        const char* seconds = std::getenv("QUODDLE_LONGEST_PAUSE");
        return std::chrono::seconds(seconds ? std::clamp(std::atoi(seconds), 1, 3600) : 1);
    }();
    return longest;
}

} // namespace

class ThreadWaker final : public Waker {
public:
    ~ThreadWaker() override {
        if (mEvent >= 0)
            ::close(mEvent);
    }

    /// Called for each wait, because the process may have been short of descriptors at an earlier one. Called only on the waker's own
    /// thread.
    void open() {
        if (mEvent < 0)
            mEvent = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    }
    void wake() override {
        const std::uint64_t one = 1;
        if (const int event = mEvent; event >= 0)
            (void)!::write(event, &one, sizeof one);
    }
    void forget() {
        std::uint64_t count;
        (void)!::read(mEvent, &count, sizeof count);
    }
    int descriptor() const { return mEvent; }

    int waits = 0; // nested waits of the thread

private:
    std::atomic<int> mEvent = -1;
};

namespace {

struct Waiting {
    std::mutex mutex;
    std::vector<ThreadWaker*> threads;
    std::map<const WaitAlarm*, Clock::time_point> alarms;
};

/// Never destroyed, because threads may still wait while static objects are being destroyed.
Waiting& waiting() {
    static auto* const shared = new Waiting;
    return *shared;
}

const std::shared_ptr<ThreadWaker>& wakerOfThread() {
    thread_local const auto waker = std::make_shared<ThreadWaker>();
    return waker;
}

/// The time of the first alarm that is still to come, or `until` when that is earlier.
Clock::time_point nextAlarm(Clock::time_point now, Clock::time_point until) {
    const std::lock_guard lock(waiting().mutex);
    for (const auto& [alarm, time] : waiting().alarms)
        if (time > now)
            until = std::min(until, time);
    return until;
}

} // namespace

void wakeWaits() {
    const std::lock_guard lock(waiting().mutex);
    for (ThreadWaker* thread : waiting().threads)
        thread->wake();
}

void WaitAlarm::set(Time time) {
    {
        const std::lock_guard lock(waiting().mutex);
        waiting().alarms[this] = time;
    }
    wakeWaits(); // pausing threads have computed their end from the old times
}

WaitAlarm::~WaitAlarm() {
    const std::lock_guard lock(waiting().mutex);
    waiting().alarms.erase(this);
}

Wait::Wait() : mThread(wakerOfThread()) {
    mThread->open();
    if (mThread->waits++ > 0)
        return;
    const std::lock_guard lock(waiting().mutex);
    waiting().threads.push_back(mThread.get());
}

Wait::~Wait() {
    if (--mThread->waits > 0) {
        if (mHasForgotten)
            mThread->wake();
        return;
    }
    const std::lock_guard lock(waiting().mutex);
    std::erase(waiting().threads, mThread.get());
}

std::shared_ptr<Waker> Wait::waker() {
    return wakerOfThread();
}

int Wait::descriptor() const {
    return mThread->descriptor();
}

void Wait::forget() {
    mThread->forget();
    mHasForgotten = true;
}

int Wait::pause(Clock::time_point until, std::span<pollfd> descriptors) {
    assert(descriptors.size() <= kMaximumDescriptors);
    const auto now = Clock::now();
    until = nextAlarm(now, until);
    const Clock::duration longest = descriptor() < 0 ? Clock::duration(kBlindPause) : longestPause();
    const auto time = until <= now ? Clock::duration::zero() : std::min(until - now, longest);
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    const timespec limit{seconds.count(), (time - seconds).count()};
    std::array<pollfd, kMaximumDescriptors + 1> all{{{descriptor(), POLLIN, 0}}};
    std::copy(descriptors.begin(), descriptors.end(), all.begin() + 1);
    const int count = ::ppoll(all.data(), static_cast<nfds_t>(descriptors.size() + 1), &limit, nullptr);
    const bool isReady = count > 0;
    for (std::size_t i = 0; i < descriptors.size(); ++i)
        descriptors[i].revents = isReady ? all[i + 1].revents : 0; // clears results of an earlier call
    if (count < 0)
        return errno == EINTR ? 0 : -1;
    if (!isReady || !all[0].revents)
        return count;
    forget();
    return count - 1;
}

} // namespace quoddle

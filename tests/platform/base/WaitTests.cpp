// SPDX-License-Identifier: MIT
#include "platform/base/Wait.h"

#include <array>
#include <atomic>
#include <csignal>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace quoddle {
namespace {

using Clock = std::chrono::steady_clock;
constexpr Clock::time_point kNever = Clock::time_point::max();

/// Makes pauses longer than the tests' limits, so that only the right wake can end a wait in time.
[[maybe_unused]] const int kLongPauses = ::setenv("QUODDLE_LONGEST_PAUSE", "600", 1);

bool isReadable(int descriptor) {
    pollfd state{descriptor, POLLIN, 0};
    return ::poll(&state, 1, 0) == 1;
}

TEST(Wait, NoWakeIsLost) {
    constexpr int kRounds = 1000;
    std::atomic<int> turn = 0;
    std::array<std::shared_ptr<Waker>, 2> wakers;
    const auto play = [&](int self) {
        for (Wait wait; turn < kRounds;) {
            if (turn % 2 != self) {
                wait.pause(kNever);
                continue;
            }
            ++turn;
            if (self == 0)
                wakeWaits(); // wakes all threads
            else
                wakers[0]->wake();
        }
    };
    wakers[0] = Wait::waker();
    std::thread other(play, 1);
    play(0);
    wakeWaits();
    other.join();
}

TEST(Wait, AWaitThatEndsLeavesItsWakesToTheOneAroundIt) {
    Wait outer;
    {
        Wait inner;
        Wait::waker()->wake();
        EXPECT_EQ(inner.pause(kNever), 0);
        EXPECT_FALSE(isReadable(inner.descriptor())) << "forgotten";
    }
    EXPECT_EQ(outer.pause(kNever), 0);
    { const Wait inner; }
    EXPECT_FALSE(isReadable(outer.descriptor())) << "nothing came";
    {
        const Wait inner;
        wakeWaits();
    }
    EXPECT_TRUE(isReadable(outer.descriptor()));
    outer.forget();
    EXPECT_FALSE(isReadable(outer.descriptor()));
}

TEST(Wait, EndsWithADescriptorASignalOrAtItsTime) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    std::array<pollfd, 3> waited{{{ends[0], POLLIN, 0}, {-1, POLLIN, 0}, {ends[1], 0, 0}}};
    Wait wait;
    const auto soon = Clock::now() + std::chrono::milliseconds(30);
    while (Clock::now() < soon)
        EXPECT_EQ(wait.pause(soon, waited), 0);
    EXPECT_EQ(waited[0].revents, 0);
    ASSERT_EQ(::write(ends[1], "x", 1), 1);
    Wait::waker()->wake(); // a wake at the same time must not hide the ready descriptor
    EXPECT_EQ(wait.pause(kNever, waited), 1);
    EXPECT_EQ(waited[0].revents, POLLIN);
    {
        Wait within;
        EXPECT_EQ(within.pause(Clock::time_point::min(), waited), 1);
    }
    wait.forget();

    // The signal interrupts a pause sooner or later. The descriptors' old results must then be cleared.
    struct sigaction quiet {};
    quiet.sa_handler = [](int) {};
    ::sigaction(SIGUSR1, &quiet, nullptr);
    std::atomic<bool> isOver = false;
    std::thread sender([&, thread = ::pthread_self()] {
        for (; !isOver; ::usleep(1000))
            ::pthread_kill(thread, SIGUSR1);
    });
    waited[0].events = 0;
    EXPECT_EQ(wait.pause(kNever, waited), 0);
    EXPECT_EQ(waited[0].revents, 0);
    isOver = true;
    sender.join();
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(Wait, AlarmsWakeOnceAndCanBeSetAnew) {
    const auto in = [](int milliseconds) { return Clock::now() + std::chrono::milliseconds(milliseconds); };
    WaitAlarm far(in(3'600'000)), alarm;
    Wait wait;
    wait.forget();
    for (int round = 0; round < 2; ++round) {
        const auto time = in(20);
        std::thread([&] { alarm.set(time); }).join();
        EXPECT_EQ(wait.pause(kNever), 0) << "it wakes those who know another time";
        while (Clock::now() < time)
            EXPECT_EQ(wait.pause(kNever), 0);
    }
    const auto end = in(20);
    while (Clock::now() < end)
        EXPECT_EQ(wait.pause(end), 0) << "those that are over wake nobody";
    {
        const WaitAlarm gone(in(20));
        wait.forget();
    }
    std::thread waker([waker = Wait::waker()] {
        ::usleep(40'000);
        waker->wake();
    });
    const auto begin = Clock::now();
    EXPECT_EQ(wait.pause(kNever), 0);
    EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(30)) << "nor those that are gone";
    waker.join();
}

TEST(Wait, ThreadsComeAndGo) {
    const int before = ::dup(0);
    std::shared_ptr<Waker> left;
    for (int round = 0; round < 200; ++round) {
        std::atomic<bool> isOver = false;
        std::array<std::thread, 4> threads;
        for (std::thread& thread : threads)
            thread = std::thread([&] {
                for (Wait wait; !isOver;)
                    wait.pause(kNever);
            });
        isOver = true;
        wakeWaits();
        for (std::thread& thread : threads)
            thread.join();
    }
    std::thread([&] { left = Wait::waker(); }).join();
    left->wake(); // the thread has ended, so nobody is woken
    left.reset();
    const int after = ::dup(0);
    EXPECT_EQ(after, before + 1) << "the descriptors of threads go with them";
    ::close(before);
    ::close(after);
}

TEST(Wait, WithoutDescriptorsAThreadLooksOftenAndLaterOnIsWokenAgain) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs descriptors of its own to look at objects";
#endif
    rlimit before;
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    std::thread([&] {
        const auto waker = Wait::waker(); // taken before the thread has an eventfd
        const int lowest = ::dup(0);
        ::close(lowest);
        const rlimit none{static_cast<rlim_t>(lowest), before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
        {
            Wait wait;
            EXPECT_LT(wait.descriptor(), 0);
            EXPECT_EQ(wait.pause(kNever), 0);
            waker->wake();
            wakeWaits();
            wait.forget();
        }
        ::setrlimit(RLIMIT_NOFILE, &before);
        Wait wait;
        EXPECT_GE(wait.descriptor(), 0);
        waker->wake();
        EXPECT_EQ(wait.pause(kNever), 0);
    }).join();
}

} // namespace
} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/foundation/DelayedPerforms.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/foundation/NSOperationQueue.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <semaphore>

namespace quoddle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Turns the event loop until the condition holds, or fails after ten seconds.
bool eventually(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < 10'000)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
    return condition();
}

class ManualClock final : public Clock {
public:
    explicit ManualClock(ManualClock*& self) { self = this; }
    double now() const override { return mNow; }
    void wakeAt(double time) override { mWake = time; }
    void advance(double seconds) {
        const double until = mNow + seconds;
        while (mWake && *mWake <= until) {
            mNow = std::max(mNow, *mWake);
            mWake.reset();
            onWake();
        }
        mNow = until;
    }

private:
    double mNow = 100;
    std::optional<double> mWake;
};

} // namespace

TEST(NSOperationQueue, SerialQueueKeepsOrderAndCountsWhatRuns) {
    NSOperationQueue queue(1);
    std::binary_semaphore gate(0);
    std::vector<int> order;
    std::atomic<int> countAtEnd = -1;
    auto first = std::make_shared<NSOperation>([&] {
        gate.acquire();
        order.push_back(1);
    });
    first->setCompletionBlock([&] { countAtEnd = queue.operationCount(); });
    queue.addOperation(first);
    ASSERT_TRUE(eventually([&] { return first->isExecuting(); }));
    queue.addOperation([&] { order.push_back(2); });
    auto urgent = std::make_shared<NSOperation>([&] { order.push_back(3); });
    urgent->setQueuePriority(NSOperation::QueuePriority::high);
    queue.addOperation(urgent);
    EXPECT_EQ(queue.operationCount(), 3);
    EXPECT_FALSE(queue.waitUntilAllOperationsAreFinished(1ms));
    gate.release();
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(queue.operationCount(), 0);
    EXPECT_TRUE(first->isFinished());
    EXPECT_EQ(order, (std::vector{1, 3, 2})) << "priority first, then the order of arrival";
    EXPECT_EQ(countAtEnd, 2) << "an operation leaves its queue before its completion block runs";
}

TEST(NSOperationQueue, RunsAsManyAtOnceAsAllowed) {
    NSOperationQueue queue(3);
    std::counting_semaphore gate(0);
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    for (int i = 0; i < 9; ++i)
        queue.addOperation([&] {
            most = std::max<int>(most, ++running);
            gate.acquire();
            --running;
        });
    EXPECT_TRUE(eventually([&] { return running == 3; }));
    gate.release(9);
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(most, 3);
}

TEST(NSOperationQueue, CancelledAndThrowingOperationsStillComplete) {
    std::atomic<int> completions = 0;
    std::atomic<bool> ran = false;
    {
        NSOperationQueue queue(1);
        std::binary_semaphore gate(0);
        queue.addOperation([&] { gate.acquire(); });
        auto throwing = std::make_shared<NSOperation>([] { throw std::runtime_error("expected"); });
        auto cancelled = std::make_shared<NSOperation>([&] { ran = true; });
        for (const auto& operation : {throwing, cancelled}) {
            operation->setCompletionBlock([&] { ++completions; });
            queue.addOperation(operation);
        }
        cancelled->cancel();
        gate.release();
        queue.waitUntilAllOperationsAreFinished();
        EXPECT_TRUE(cancelled->isCancelled());
    }
    EXPECT_EQ(completions, 2);
    EXPECT_FALSE(ran);
}

TEST(MainThread, RunsWorkInOrderAndReleasesWaitersAtTheEnd) {
    std::vector<int> order;
    NSOperationQueue queue(1);
    std::atomic<bool> answered = false;
    queue.addOperation([&] {
        EXPECT_FALSE(MainThread::isCurrent());
        MainThread::dispatchAsync([&] { order.push_back(1); });
        answered = MainThread::dispatchSync([&] {
            EXPECT_TRUE(MainThread::isCurrent());
            order.push_back(2);
        });
    });
    EXPECT_TRUE(eventually([&] { return answered.load(); }));
    EXPECT_EQ(order, (std::vector{1, 2}));

    bool direct = false;
    EXPECT_TRUE(MainThread::dispatchSync([&] { direct = true; }));
    EXPECT_TRUE(direct);

    // After the event loop has ended, neither a caller that is already waiting nor a later one is blocked, and their work is not run.
    std::atomic<int> refused = 0;
    std::atomic<bool> begun = false;
    queue.addOperation([&] {
        begun = true;
        refused += !MainThread::dispatchSync([&] { order.push_back(3); });
        refused += !MainThread::dispatchSync([&] { order.push_back(4); });
    });
    while (!begun)
        std::this_thread::yield();
    std::this_thread::sleep_for(10ms);
    MainThread::close();
    queue.waitUntilAllOperationsAreFinished();
    MainThread::open();
    QCoreApplication::processEvents();
    EXPECT_EQ(refused, 2);
    EXPECT_EQ(order.size(), 2u);
}

TEST(MainThread, ServesNestedEventLoops) {
    bool inner = false;
    MainThread::dispatchAsync([&] {
        QEventLoop nested;
        MainThread::dispatchAsync([&] {
            inner = true;
            nested.quit();
        });
        QTimer::singleShot(2000, &nested, &QEventLoop::quit);
        nested.exec();
    });
    EXPECT_TRUE(eventually([&] { return inner; }));
}

TEST(DelayedPerforms, KeepTimeOrderAndCanBeWithdrawn) {
    ManualClock* clock = nullptr;
    DelayedPerforms performs(std::make_unique<ManualClock>(clock));
    std::vector<int> calls;
    const int target = 0;
    const int other = 0;
    auto add = [&](const void* whom, const QString& selector, int number, double delay) {
        performs.perform(
            whom, selector, [&calls, number] { calls.push_back(number); }, delay);
    };
    add(&target, u"idle"_s, 3, 30);
    add(&target, u"idle"_s, 1, -5); // a negative delay counts as 0
    add(&target, u"idle"_s, 2, 0);
    EXPECT_TRUE(calls.empty()); // no call is made inside perform()
    clock->advance(0);
    EXPECT_EQ(calls, (std::vector{1, 2}));
    clock->advance(29.9);
    EXPECT_EQ(calls.size(), 2u);
    clock->advance(0.1);
    EXPECT_EQ(calls.back(), 3);

    add(&target, u"idle"_s, 4, 1);
    add(&target, u"quit"_s, 5, 1);
    add(&other, u"idle"_s, 6, 1);
    performs.cancelPreviousPerformRequests(&target, u"idle"_s);
    EXPECT_EQ(performs.pendingCount(), 2);
    clock->advance(1);
    EXPECT_EQ(calls, (std::vector{1, 2, 3, 5, 6}));
    add(&target, u"idle"_s, 7, 1);
    performs.cancelPreviousPerformRequests(&target);
    EXPECT_EQ(performs.pendingCount(), 0);
}

TEST(DelayedPerforms, ARepeatingCallWithoutDelayDoesNotStarveTheRest) {
    DelayedPerforms performs;
    int turns = 0;
    std::function<void()> again = [&] {
        ++turns;
        performs.perform(&performs, u"again"_s, again, 0);
    };
    performs.perform(&performs, u"again"_s, again, 0);
    bool others = false;
    QTimer::singleShot(20, [&] { others = true; });
    EXPECT_TRUE(eventually([&] { return others; }));
    EXPECT_GT(turns, 1);
    performs.cancelPreviousPerformRequests(&performs);
}

TEST(NSNotificationCenter, DeliversByNameAndSender) {
    NSNotificationCenter center;
    const int me = 0;
    const int a = 0;
    const int b = 0;
    std::vector<QString> heard;
    auto listen = [&](const QString& as) {
        return [&heard, as](const NSNotification& notification) { heard.push_back(as + notification.userInfo.value(u"n"_s).toString()); };
    };
    center.addObserver(&me, listen(u"all"_s), u"Progress"_s);
    center.addObserver(&me, listen(u"a"_s), u"Progress"_s, &a);
    center.addObserver(&me, listen(u"any"_s), {}, &b);
    center.postNotification(u"Progress"_s, &a, {{u"n"_s, 1}});
    EXPECT_EQ(heard, (std::vector{u"all1"_s, u"a1"_s}));
    center.postNotification(u"Other"_s, &b, {{u"n"_s, 2}});
    EXPECT_EQ(heard.back(), u"any2"_s);
    center.removeObserver(&me, u"Progress"_s, &a);
    center.postNotification(u"Progress"_s, &a, {{u"n"_s, 3}});
    EXPECT_EQ(heard, (std::vector{u"all1"_s, u"a1"_s, u"any2"_s, u"all3"_s}));
    center.removeObserver(&me);
    center.postNotification(u"Progress"_s, &b);
    EXPECT_EQ(heard.size(), 4u);

    // An observer that is removed while the notification is being delivered is not called any more.
    const int second = 0;
    bool called = false;
    center.addObserver(
        &me, [&](const NSNotification&) { center.removeObserver(&second); }, u"Gone"_s);
    center.addObserver(
        &second, [&](const NSNotification&) { called = true; }, u"Gone"_s);
    center.postNotification(u"Gone"_s);
    EXPECT_FALSE(called);
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The callbacks of a running script: yielding, cancelling, deadlines, sent and continued events.
#include "engine/AESendMessageResult.h"
#include "Fixture.h"

#include "engine/BackgroundSend.h"
#include "engine/OSACallbacks.h"
#include "platform/ae/AEMainThread.h"
#include "platform/ae/NSAppleEventManager.h"
#include "platform/foundation/MainThread.h"

#include <future>
#include <thread>

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

namespace quoddle {

namespace {

struct Listener : QXOSAComponentDelegate {
    void scriptDidYield() override {
        ++yields;
        if (onYield)
            onYield();
    }
    void willSendAppleEvent(const AEDesc& event, AESendMode sendMode, std::int32_t sendPriority, std::int32_t timeoutInTicks) override {
        std::lock_guard lock(mutex);
        willSend.push_back(event.eventID());
        modes.push_back(sendMode);
        priorities.push_back(sendPriority);
        timeouts.push_back(timeoutInTicks);
    }
    void didSendAppleEvent(const AEDesc&, const AEDesc& reply, OSStatus status) override {
        std::lock_guard lock(mutex);
        replies.push_back(reply);
        statuses.push_back(status);
    }
    std::atomic<int> yields = 0;
    std::function<void()> onYield;
    std::mutex mutex; ///< several threads send at the same time
    std::vector<AEEventID> willSend;
    std::vector<AESendMode> modes;
    std::vector<std::int32_t> priorities, timeouts;
    std::vector<AEDesc> replies;
    std::vector<OSStatus> statuses;
};

AEDesc event(AEEventClass eventClass = "test"_4cc, AEEventID eventID = "work"_4cc) {
    return AEDesc::appleEvent(eventClass, eventID);
}

class OSACallbacksTest : public BridgeTest {
protected:
    OSACallbacksTest() {
        component->setDelegate(&listener);
        AESetMainThread({MainThread::isCurrent, MainThread::dispatchAsync, [](std::chrono::milliseconds slice) {
                             QTimer alarm;
                             alarm.setSingleShot(true);
                             alarm.start(slice);
                             QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
                         }});
        manager.setEventHandler(
            [](const auto&, const auto& answer) { answer->setDescriptor(Descriptor::descriptorWithInt32(5), "----"_4cc); }, "test"_4cc,
            "work"_4cc);
        manager.setEventHandler([this](const auto&, const auto&) { suspension = manager.suspendCurrentAppleEvent(); }, "test"_4cc,
                                "wait"_4cc);
        manager.setEventHandler([this](const auto&, const auto&) { wasResuming = component->isResuming(); }, "test"_4cc, "resu"_4cc);
    }
    ~OSACallbacksTest() override {
        AESetMainThread({});
        for (AEEventID eventID : {"work"_4cc, "wait"_4cc, "resu"_4cc})
            manager.removeEventHandlerForEventClass("test"_4cc, eventID);
    }

    OSErr send(const AEDesc& sent, AESendMode mode = kAEWaitReply, std::int32_t ticks = kAEDefaultTimeout, AESendPriority priority = 0) {
        return OSASendCallback(sent, &reply, mode, priority, ticks, nullptr, nullptr, component.get());
    }

    /// Runs the body on another thread and the application's event loop on this one.
    static void runBeside(const std::function<void()>& body) {
        std::atomic<bool> ended = false;
        std::thread worker([&] {
            body();
            ended = true;
        });
        while (!ended)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        worker.join();
    }

    Listener listener;
    NSAppleEventManager& manager = NSAppleEventManager::sharedAppleEventManager();
    NSAppleEventManagerSuspensionID suspension;
    bool wasResuming = false;
    AEDesc reply = AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
};

} // namespace

TEST_F(OSACallbacksTest, NothingThatADelegateThrowsReachesTheScript) {
    LogCatcher log;
    for (int kind : {0, 1}) {
        listener.onYield = [kind] {
            if (kind == 0)
                throw std::runtime_error("thrown");
            throw kind;
        };
        EXPECT_EQ(OSAActiveCallback(component.get()), noErr);
    }
    EXPECT_EQ(log.count(QStringLiteral("thrown")), 1);
    EXPECT_EQ(log.count(QStringLiteral("delegate")), 1);
}

TEST_F(OSACallbacksTest, EveryKindOfCancellationIsTakenOnce) {
    EXPECT_EQ(OSAActiveCallback(component.get()), noErr);
    EXPECT_EQ(listener.yields, 1);
    component->setCancelled(true);
    EXPECT_EQ(OSAActiveCallback(component.get()), userCanceledErr);
    EXPECT_FALSE(component->isCancelled());
    EXPECT_EQ(OSAActiveCallback(component.get()), noErr);
    component->setThreadCanceledError(0x1FF80);
    component->setCancelled(true);
    EXPECT_EQ(send(event()), static_cast<OSErr>(0xFF80)) << "cut to 16 bits";
    component->setCancelled(true);
    EXPECT_EQ(OSAResumeCallback(event(), &reply, component.get()), -128);
    auto operation = std::make_shared<NSOperation>([] {});
    component->setOperation(operation);
    EXPECT_EQ(OSAActiveCallback(component.get()), noErr);
    operation->cancel();
    EXPECT_EQ(OSAActiveCallback(component.get()), -128);
    EXPECT_EQ(OSAActiveCallback(component.get()), -128) << "the operation stays cancelled";
    component->setOperation(nullptr);
    component->setThreadCanceledError(userCanceledErr);
    std::unique_ptr<QThread> thread(QThread::create([&] {
        while (OSAActiveCallback(component.get()) == noErr)
            QThread::msleep(1);
    }));
    thread->start();
    thread->requestInterruption();
    EXPECT_TRUE(thread->wait(5000));
    EXPECT_EQ(OSAActiveCallback(nullptr), noErr);
}

TEST_F(OSACallbacksTest, TheMainLoopTurnsWhileAScriptRunsOnIt) {
    int turned = 0;
    MainThread::dispatchAsync([&] { ++turned; });
    component->setYieldCPU(false);
    EXPECT_EQ(OSAActiveCallback(component.get()), noErr);
    EXPECT_EQ(turned, 0);
    component->setYieldCPU(true);
    std::thread([&] { EXPECT_EQ(OSAActiveCallback(component.get()), noErr); }).join();
    EXPECT_EQ(turned, 0) << "only on the main thread";
    EXPECT_EQ(OSAActiveCallback(component.get()), noErr);
    EXPECT_EQ(turned, 1);
}

TEST_F(OSACallbacksTest, ARunningScriptIsStoppedFromOutside) {
    QXOSAIDRef script = compiled("loop");
    std::thread stopper([&] {
        while (listener.yields < 100)
            std::this_thread::yield();
        component->setCancelled(true);
    });
    EXPECT_FALSE(script->execute());
    stopper.join();
    EXPECT_EQ(script->lastError(), errOSAScriptError);
    EXPECT_EQ(component->lastErrorInfo()->error(), userCanceledErr);
}

TEST_F(OSACallbacksTest, Deadlines) {
    component->setTimeoutInterval(-1);
    EXPECT_EQ(OSAActiveCallback(component.get()), errAETimeout);
    EXPECT_EQ(OSAActiveCallback(component.get()), errAETimeout) << "it stays";
    EXPECT_EQ(send(event()), errAETimeout);
    EXPECT_EQ(listener.yields, 0);
    EXPECT_TRUE(listener.willSend.empty());
    component->setTimeoutInterval(5);
    for (std::int32_t ticks : {600, 60, kAEDefaultTimeout, kNoTimeOut})
        EXPECT_EQ(send(event(), kAEWaitReply, ticks), noErr);
    EXPECT_LE(listener.timeouts[0], 300);
    EXPECT_GE(listener.timeouts[0], 240);
    EXPECT_EQ(listener.timeouts[1], 60);
    EXPECT_EQ(listener.timeouts[2], -1);
    EXPECT_EQ(listener.timeouts[3], -2);
    // A deadline that passes while the event is handled turns success into a timeout.
    listener.onYield = [&] { component->setTimeoutInterval(-1); };
    EXPECT_EQ(send(event()), errAETimeout);
    EXPECT_EQ(listener.statuses.back(), errAETimeout);
}

TEST_F(OSACallbacksTest, SendingTellsTheDelegate) {
    EXPECT_EQ(send(event()), noErr);
    EXPECT_EQ(reply.find("----"_4cc)->asInt32(), 5);
    EXPECT_EQ(listener.yields, 1);
    EXPECT_EQ(listener.willSend, std::vector{"work"_4cc});
    EXPECT_EQ(listener.replies.at(0), reply);
    for (AEEventID terminology : {"gdte"_4cc, "gdut"_4cc})
        EXPECT_EQ(send(event("ascr"_4cc, terminology)), errAEEventNotHandled);
    EXPECT_EQ(listener.willSend.size(), 1u);
    EXPECT_EQ(listener.statuses, std::vector<OSStatus>{noErr});
    EXPECT_EQ(send(event(), 0), noErr);
    EXPECT_EQ(send(event("test"_4cc, "none"_4cc)), errAEEventNotHandled);
    EXPECT_EQ(listener.statuses.back(), errAEEventNotHandled);
    listener.onYield = [] { throw QXOSAException(QStringLiteral("x"), QStringLiteral("y")); };
    LogCatcher log;
    EXPECT_EQ(send(event()), noErr) << "a delegate's exception ends in the procedure";
    EXPECT_EQ(compiled("send test work")->execute()->int32Value(), 5);
}

TEST_F(OSACallbacksTest, WhatIsGivenGoesAlongWithTheEvent) {
    struct Sent {
        AESendMode mode;
        std::int32_t ticks;
        bool isHere; ///< whether the event was sent on the calling thread
        const void* refCon;
        bool isCancellable;
        bool operator==(const Sent&) const = default;
    };
    std::vector<Sent> sent;
    const auto thisThread = std::this_thread::get_id();
    AESetRemoteSender([&](const AEDesc&, AEDesc*, AESendMode mode, std::int32_t ticks, const AESendOptions& options) {
        sent.push_back({mode, ticks, std::this_thread::get_id() == thisThread, options.handlerRefCon, bool(options.cancelled)});
        return OSStatus{noErr};
    });
    const AEDesc away = AEDesc::appleEvent("test"_4cc, "work"_4cc, AEDesc::ofProcess(1));
    std::vector<Sent> expected;
    for (AESendMode mode : {kAECanInteract, kAENoReply | kAECanInteract, kAEQueueReply, kAEWaitReply | kAECanSwitchLayer}) {
        const bool isHere = mode == kAECanInteract; // the mode says nothing about a reply
        EXPECT_EQ(send(away, mode, 77, -5), noErr);
        expected.push_back({mode, 77, isHere, component.get(), true});
        EXPECT_EQ(listener.modes.back(), mode);
        EXPECT_EQ(listener.priorities.back(), -5);
        EXPECT_EQ(listener.timeouts.back(), 77);
    }
    AESetRemoteSender({});
    EXPECT_EQ(sent, expected);
    EXPECT_EQ(listener.yields, 4);
}

TEST_F(OSACallbacksTest, DestructiveEventsAreRefused) {
    component->setPreventDestructiveEvents(true);
    EXPECT_EQ(send(event("aevt"_4cc, "odoc"_4cc)), errAEEventFailed);
    component->setDestructiveEventError(-9);
    EXPECT_EQ(send(event("aevt"_4cc, "odoc"_4cc)), -9);
    EXPECT_TRUE(listener.willSend.empty());
    EXPECT_EQ(listener.yields, 0);
    EXPECT_EQ(send(event("core"_4cc, "getd"_4cc)), errAEEventNotHandled);
    EXPECT_EQ(listener.willSend, std::vector{"getd"_4cc});
}

TEST_F(OSACallbacksTest, WaitingEndsByTimeOutAndCancellation) {
    reply.put("keep"_4cc, AEDesc::ofInt32(1));
    const AEDesc before = reply;
    EXPECT_EQ(send(event("test"_4cc, "wait"_4cc), kAEWaitReply, 3), errAETimeout);
    EXPECT_EQ(reply, before);
    component->setTimeoutError(-7);
    EXPECT_EQ(send(event("test"_4cc, "wait"_4cc), kAEWaitReply, 3), -7);
    std::promise<void> mayEnd;
    AESetRemoteSender([ended = mayEnd.get_future().share()](auto&&...) { return ended.wait(), OSStatus{noErr}; });
    EXPECT_EQ(send(AEDesc::appleEvent("test"_4cc, "work"_4cc, AEDesc::ofProcess(1)), kAEWaitReply, 3), -7) << "the sender forgets the time";
    mayEnd.set_value();
    AESetRemoteSender({});
    // On the main thread, whose timers go on during the wait.
    QTimer::singleShot(20, [&] { component->setCancelled(true); });
    EXPECT_EQ(send(event("test"_4cc, "wait"_4cc)), userCanceledErr);
    EXPECT_TRUE(component->isCancelled()) << "left for the next procedure";
    component->setCancelled(false);
    runBeside([&] {
        MainThread::dispatchAsync([&] { QTimer::singleShot(20, [&] { component->setCancelled(true); }); });
        EXPECT_EQ(send(event("test"_4cc, "wait"_4cc)), userCanceledErr);
    });
    EXPECT_EQ(reply, before);
    // The cancellation came after the event was sent, so it takes effect and is reset.
    component->setCancelled(false);
    manager.setEventHandler([this](const auto&, const auto&) { component->setCancelled(true); }, "test"_4cc, "wait"_4cc);
    EXPECT_EQ(send(event("test"_4cc, "wait"_4cc), 0), userCanceledErr);
    EXPECT_FALSE(component->isCancelled());
}

TEST_F(OSACallbacksTest, WhatIsThrownWhileWaitingEndsThere) {
    int thrown = 0;
    AESetMainThread({MainThread::isCurrent, MainThread::dispatchAsync, [&thrown](std::chrono::milliseconds) {
                         if (++thrown < 3)
                             throw std::runtime_error("a slot's");
                         QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
                     }});
    LogCatcher log;
    EXPECT_EQ(send(event()), noErr);
    EXPECT_GE(thrown, 3);
    EXPECT_EQ(log.count(QStringLiteral("exception")), 2);
    EXPECT_EQ(reply.find("----"_4cc)->asInt32(), 5);
}

TEST_F(OSACallbacksTest, ASendWithoutAnswerLeavesNoOldReply) {
    reply.put("keep"_4cc, AEDesc::ofInt32(1));
    EXPECT_EQ(send(event(), kAENoReply), noErr);
    EXPECT_TRUE(reply.isNull());
}

TEST_F(OSACallbacksTest, SendsGoThroughTheSharedQueue) {
    std::atomic<int> running = 0, most = 0;
    std::atomic<QThread*> handled = nullptr;
    std::atomic<int> wanted = 1; // the number of events that must be in progress at the same time
    manager.setAdditionHandler(
        [&](const AEDesc&, AEDesc&, const AEHandlerContext&) {
            handled = QThread::currentThread();
            ++running;
            const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
            do {
                QThread::msleep(10);
                for (int seen = most; seen < running && !most.compare_exchange_weak(seen, running);)
                    ;
            } while (most < wanted && std::chrono::steady_clock::now() < end);
            --running;
            return OSErr{noErr};
        },
        "test"_4cc, "slow"_4cc);
    EXPECT_EQ(send(event("test"_4cc, "slow"_4cc)), noErr);
    EXPECT_NE(handled, QThread::currentThread());
    EXPECT_EQ(send(event("test"_4cc, "slow"_4cc), 0), noErr);
    EXPECT_EQ(handled, QThread::currentThread()) << "neither no-reply, queue-reply nor wait-reply";

    wanted = 20;
    std::vector<std::thread> senders;
    for (int i = 0; i < 30; ++i)
        senders.emplace_back([&] {
            AEDesc answer = AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
            OSASendCallback(event("test"_4cc, "slow"_4cc), &answer, kAEWaitReply, 0, -1, nullptr, nullptr, component.get());
        });
    for (std::thread& sender : senders)
        sender.join();
    EXPECT_EQ(most, 20);
    manager.removeAdditionHandlerForEventClass("test"_4cc, "slow"_4cc);
}

TEST_F(OSACallbacksTest, TheEndOfTheProcessWaitsForSendsThatWereGivenUp) {
    std::atomic<bool> begun = false, mayEnd = false, tidied = false;
    manager.setAdditionHandler(
        [&](const AEDesc&, AEDesc&, const AEHandlerContext& context) {
            begun = true;
            while (!context.isCancelled())
                QThread::msleep(1);
            while (!mayEnd)
                QThread::msleep(1);
            tidied = true;
            return OSErr{userCanceledErr};
        },
        "test"_4cc, "long"_4cc);
    std::thread stopper([&] {
        while (!begun)
            QThread::msleep(1);
        component->setCancelled(true);
    });
    EXPECT_EQ(send(event("test"_4cc, "long"_4cc)), userCanceledErr);
    stopper.join();
    EXPECT_FALSE(waitForSends(std::chrono::milliseconds(1)));
    mayEnd = true;
    EXPECT_TRUE(waitForSends(std::chrono::seconds(5)));
    EXPECT_TRUE(tidied);
    manager.removeAdditionHandlerForEventClass("test"_4cc, "long"_4cc);
}

TEST(AESendMessageResult, GivesItsReplyAwayOnce) {
    AESendMessageResult result;
    EXPECT_FALSE(result.isHandled());
    EXPECT_TRUE(result.replyEvent().isNull());
    *result.replyEventPointer() = event();
    EXPECT_EQ(result.replyEvent(), event());
    EXPECT_EQ(result.detachedReplyEvent(), event());
    EXPECT_TRUE(result.replyEvent().isNull());
}

TEST_F(OSACallbacksTest, ContinuedEventsReachTheApplication) {
    bool onMain = false;
    manager.setEventHandler(
        [&](const auto&, const auto& answer) {
            onMain = MainThread::isCurrent();
            wasResuming = component->isResuming();
            EXPECT_TRUE(answer->attributeDescriptorForKeyword("FDrm"_4cc)->booleanValue());
        },
        "test"_4cc, "resu"_4cc);
    QXOSAIDRef script = compiled("continue");
    runBeside([&] { script->executeEvent(Descriptor::appleEventWithEventClass("test"_4cc, "resu"_4cc)); });
    EXPECT_TRUE(onMain);
    EXPECT_TRUE(wasResuming);
    EXPECT_TRUE(component->isResuming()) << "not reset here";
    EXPECT_EQ(OSAResumeCallback(event("test"_4cc, "none"_4cc), &reply, component.get()), errAEEventNotHandled);
    // A nested send saves and restores the flag.
    AEDesc plain = AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
    manager.setEventHandler([&](const auto&, const auto&) { wasResuming = component->isResuming(); }, "test"_4cc, "resu"_4cc);
    OSASendCallback(event("test"_4cc, "resu"_4cc), &plain, kAEWaitReply, 0, -1, nullptr, nullptr, component.get());
    EXPECT_FALSE(wasResuming);
    EXPECT_TRUE(component->isResuming());
    component->setResuming(false);
    OSASendCallback(event("test"_4cc, "resu"_4cc), &reply, kAEWaitReply, 0, -1, nullptr, nullptr, component.get());
    EXPECT_TRUE(wasResuming) << "the mark of the reply";
    EXPECT_FALSE(component->isResuming());
}

TEST_F(OSACallbacksTest, ContinuingEndsWithTheComponentsNumbers) {
    component->setTimeoutError(-7);
    component->setThreadCanceledError(-9);
    manager.setAdditionHandler([](const auto&, const auto&, const auto&) { return OSErr{errAETimeout}; }, "test"_4cc, "late"_4cc);
    EXPECT_EQ(OSAResumeCallback(event("test"_4cc, "late"_4cc), &reply, component.get()), -7);
    manager.removeAdditionHandlerForEventClass("test"_4cc, "late"_4cc);
    QTimer::singleShot(0, [&] { component->setCancelled(true); });
    EXPECT_EQ(OSAResumeCallback(event("test"_4cc, "wait"_4cc), &reply, component.get()), -9);
    EXPECT_TRUE(component->isCancelled()) << "left for the next procedure";
}

} // namespace quoddle

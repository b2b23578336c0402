// SPDX-License-Identifier: MIT
// Events inside one process: which handler takes them on which thread, and that each event that wants an answer gets exactly one.
#include "EventLoop.h"

#include "platform/ae/AESendMessage.h"
#include "platform/ae/NSAppleEventManager.h"
#include "platform/base/Wait.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace quoddle {

namespace {

using namespace std::chrono_literals;
using Manager = NSAppleEventManager;

AEDesc event(AEEventClass eventClass = "test"_4cc, AEEventID eventID = "work"_4cc, AEDesc address = {}) {
    return AEDesc::appleEvent(eventClass, eventID, std::move(address));
}

class NSAppleEventManagerTest : public testing::Test {
protected:
    ~NSAppleEventManagerTest() override {
        for (AEEventClass eventClass : {"test"_4cc, "aevt"_4cc, "****"_4cc})
            for (AEEventID eventID : {"work"_4cc, "othr"_4cc, "ansr"_4cc, "****"_4cc}) {
                manager.removeEventHandlerForEventClass(eventClass, eventID);
                manager.removeAdditionHandlerForEventClass(eventClass, eventID);
            }
    }

    void answerWith(std::int32_t value, AEEventClass eventClass, AEEventID eventID) {
        manager.setEventHandler(
            [value](const auto&, const auto& answer) {
                answer->setDescriptor(NSAppleEventDescriptor::descriptorWithInt32(value), "----"_4cc);
            },
            eventClass, eventID);
    }

    static std::optional<std::int32_t> result(const AEDesc& answer, AEKeyword key = "----"_4cc) {
        return answer.find(key) ? answer.find(key)->asInt32() : std::nullopt;
    }

    Manager& manager = Manager::sharedAppleEventManager();
    AEDesc reply;
};

} // namespace

TEST_F(NSAppleEventManagerTest, TheMostExactHandlerWinsAndApplicationsComeFirst) {
    manager.setAdditionHandler(
        [](const AEDesc&, AEDesc& answer, const AEHandlerContext&) {
            answer.put("----"_4cc, AEDesc::ofInt32(5));
            return OSErr{0};
        },
        "test"_4cc, "work"_4cc);
    const std::tuple<AEEventClass, AEEventID, std::int32_t> kFromWildToExact[] = {
        {"****"_4cc, "****"_4cc, 1}, {"****"_4cc, "work"_4cc, 2}, {"test"_4cc, "****"_4cc, 3}, {"test"_4cc, "work"_4cc, 4}};
    EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(result(reply), 5);
    for (auto [eventClass, eventID, value] : kFromWildToExact) {
        answerWith(value, eventClass, eventID);
        EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kAEDefaultTimeout), noErr);
        EXPECT_EQ(result(reply), value);
    }
    EXPECT_TRUE(manager.hasEventHandlerForEventClass("what"_4cc, "ever"_4cc));
}

TEST_F(NSAppleEventManagerTest, NobodyTakesIt) {
    EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kAEDefaultTimeout), errAEEventNotHandled);
    EXPECT_EQ(result(reply, "errn"_4cc), errAEEventNotHandled);
    EXPECT_EQ(AESendMessage(event(), nullptr, kAENoReply, kAEDefaultTimeout), errAEEventNotHandled);
    EXPECT_EQ(manager.dispatchRawAppleEvent(event(), reply, nullptr), errAEEventNotHandled);
    manager.setAdditionHandler([](const AEDesc&, AEDesc&, const AEHandlerContext&) { return static_cast<OSErr>(errAEEventNotHandled); },
                               "test"_4cc, "work"_4cc);
    EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kAEDefaultTimeout), errAEEventNotHandled);
}

TEST_F(NSAppleEventManagerTest, Addresses) {
    answerWith(1, "test"_4cc, "work"_4cc);
    AEDesc untouched = AEDesc::ofInt32(9);
    const std::pair<AEDesc, OSStatus> kAddresses[] = {
        {AEDesc(), noErr},
        {AEDesc::ofCurrentProcess(), noErr},
        {AEDesc::ofProcess(getpid()), noErr},
        {AEDesc::ofProcess(getpid() + 1), procNotFound},
        {AEDesc("bund"_4cc, "org.example.none"), procNotFound},
        {AEDesc::ofInt32(1), errAEUnknownAddressType},
    };
    for (const auto& [address, status] : kAddresses) {
        reply = untouched;
        EXPECT_EQ(AESendMessage(event("test"_4cc, "work"_4cc, address), &reply, kAEWaitReply, kAEDefaultTimeout), status);
        EXPECT_EQ(reply == untouched, status != noErr);
    }
    EXPECT_EQ(AESendMessage(AEDesc::record(), &reply, kAEWaitReply, kAEDefaultTimeout), errAENotAppleEvent);
    AESetRemoteSender([](const AEDesc&, AEDesc* answer, AESendMode mode, std::int32_t ticks, const AESendOptions&) {
        *answer = AEDesc::ofInt32(mode * 1000 + ticks);
        return noErr;
    });
    EXPECT_EQ(AESendMessage(event("test"_4cc, "work"_4cc, AEDesc::ofProcess(1)), &reply, kAEWaitReply, 60), noErr);
    EXPECT_EQ(reply.asInt32(), 3060);
    AESetRemoteSender({});
}

TEST_F(NSAppleEventManagerTest, FailuresReachTheReply) {
    manager.setEventHandler([](const auto&, const auto&) { throw std::runtime_error("broken"); }, "test"_4cc, "work"_4cc);
    EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(result(reply, "errn"_4cc), errAEEventFailed);
    EXPECT_EQ(reply.find("errs"_4cc)->asUTF8(), "broken");
    manager.setAdditionHandler(
        [](const AEDesc&, AEDesc& answer, const AEHandlerContext&) {
            answer.put("errn"_4cc, AEDesc::ofInt32(7));
            return static_cast<OSErr>(errAEEventFailed);
        },
        "test"_4cc, "othr"_4cc);
    EXPECT_EQ(AESendMessage(event("test"_4cc, "othr"_4cc), &reply, kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(result(reply, "errn"_4cc), 7) << "the handler's own number stays";
}

TEST_F(NSAppleEventManagerTest, NoReplyWantedMeansANullReply) {
    DescType replyType = 0;
    manager.setEventHandler(
        [&](const auto&, const auto& answer) {
            answer->setDescriptor(NSAppleEventDescriptor::descriptorWithInt32(1), "----"_4cc);
            replyType = answer->descriptorType();
        },
        "test"_4cc, "work"_4cc);
    EXPECT_EQ(AESendMessage(event(), &reply, kAENoReply | kAECanInteract, kAEDefaultTimeout), noErr);
    EXPECT_EQ(replyType, "null"_4cc);
    EXPECT_TRUE(reply.isNull());
}

TEST_F(NSAppleEventManagerTest, HandlersRunOnTheirThreads) {
    EventLoop loop;
    bool applicationOnMain = false, additionOnMain = true;
    manager.setEventHandler([&](const auto&, const auto&) { applicationOnMain = loop.isCurrent(); }, "test"_4cc, "work"_4cc);
    manager.setAdditionHandler(
        [&](const AEDesc&, AEDesc&, const AEHandlerContext&) {
            additionOnMain = loop.isCurrent();
            return OSErr{0};
        },
        "test"_4cc, "othr"_4cc);
    loop.runBeside([&] {
        EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kAEDefaultTimeout), noErr);
        EXPECT_EQ(AESendMessage(event("test"_4cc, "othr"_4cc), &reply, kAEWaitReply, kAEDefaultTimeout), noErr);
    });
    EXPECT_TRUE(applicationOnMain);
    EXPECT_FALSE(additionOnMain);
}

TEST_F(NSAppleEventManagerTest, SuspendedEventsAreAnsweredOnce) {
    EventLoop loop;
    NSAppleEventManagerSuspensionID suspension;
    manager.setEventHandler(
        [&](const auto& received, const auto&) {
            EXPECT_EQ(manager.currentAppleEvent(), received);
            suspension = manager.suspendCurrentAppleEvent();
            EXPECT_FALSE(manager.suspendCurrentAppleEvent());
            loop.post([&] {
                EXPECT_EQ(manager.appleEventForSuspensionID(suspension)->eventID(), "work"_4cc);
                manager.replyAppleEventForSuspensionID(suspension)
                    ->setDescriptor(NSAppleEventDescriptor::descriptorWithInt32(1), "----"_4cc);
                manager.resumeWithSuspensionID(suspension);
                manager.replyAppleEventForSuspensionID(suspension)
                    ->setDescriptor(NSAppleEventDescriptor::descriptorWithInt32(2), "----"_4cc);
                manager.resumeWithSuspensionID(suspension);
            });
        },
        "test"_4cc, "work"_4cc);
    loop.runBeside([&] { EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kAEDefaultTimeout), noErr); });
    EXPECT_EQ(result(reply), 1);
    // The same sent from the main thread, which goes on processing its events while it waits.
    EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(result(reply), 1);
    EXPECT_FALSE(manager.suspendCurrentAppleEvent());
    manager.resumeWithSuspensionID({});
    EXPECT_EQ(manager.replyAppleEventForSuspensionID({}), nullptr);
}

TEST_F(NSAppleEventManagerTest, ASuspensionThatIsDroppedAnswers) {
    manager.setEventHandler([&](const auto&, const auto&) { manager.suspendCurrentAppleEvent(); }, "test"_4cc, "work"_4cc);
    EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(result(reply, "errn"_4cc), errAEEventFailed);

    EventLoop loop;
    NSAppleEventManagerSuspensionID kept;
    manager.setEventHandler(
        [&](const auto&, const auto&) {
            kept = manager.suspendCurrentAppleEvent();
            loop.post([&] { manager.answerSuspendedEvents(); });
        },
        "test"_4cc, "work"_4cc);
    EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kAEDefaultTimeout), noErr);
    EXPECT_EQ(result(reply, "errn"_4cc), connectionInvalid);
}

TEST_F(NSAppleEventManagerTest, AnAnswerThatTheEndOvertakesIsWholeOrNone) {
    EventLoop loop;
    for (int round = 0; round < 50; ++round) {
        std::thread filling;
        manager.setEventHandler(
            [&](const auto&, const auto&) {
                const auto suspension = manager.suspendCurrentAppleEvent();
                std::atomic<bool> begun = false;
                filling = std::thread([&, suspension] {
                    const auto answer = manager.replyAppleEventForSuspensionID(suspension);
                    for (int value = 1; value <= 20; ++value) {
                        answer->setDescriptor(NSAppleEventDescriptor::descriptorWithInt32(value), "----"_4cc);
                        begun = true;
                    }
                    manager.resumeWithSuspensionID(suspension);
                });
                while (!begun)
                    std::this_thread::yield();
                manager.answerSuspendedEvents();
            },
            "test"_4cc, "work"_4cc);
        EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kAEDefaultTimeout), noErr);
        filling.join();
        if (result(reply, "errn"_4cc) == connectionInvalid)
            EXPECT_FALSE(reply.find("----"_4cc));
        else
            EXPECT_EQ(result(reply), 20);
    }
}

TEST_F(NSAppleEventManagerTest, WorkTheMainThreadThrowsAwayAnswers) {
    EventLoop loop;
    answerWith(1, "test"_4cc, "work"_4cc);
    std::thread sender([&] { EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kAEDefaultTimeout), noErr); });
    loop.dropWork();
    sender.join();
    EXPECT_EQ(result(reply, "errn"_4cc), connectionInvalid);
}

TEST_F(NSAppleEventManagerTest, SendersGiveUp) {
    EventLoop loop;
    NSAppleEventManagerSuspensionID kept;
    manager.setEventHandler([&](const auto&, const auto&) { kept = manager.suspendCurrentAppleEvent(); }, "test"_4cc, "work"_4cc);
    reply = AEDesc::ofInt32(9);
    auto start = std::chrono::steady_clock::now();
    auto elapsed = [&] { return std::chrono::steady_clock::now() - start; };
    EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, 3), errAETimeout);
    EXPECT_GE(elapsed(), 50ms);
    std::atomic<bool> cancelled = false;
    std::chrono::steady_clock::time_point cancelledAt;
    loop.runBeside([&] {
        std::thread canceller([&] {
            std::this_thread::sleep_for(20ms);
            cancelledAt = std::chrono::steady_clock::now();
            cancelled = true;
            wakeWaits();
        });
        EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kNoTimeOut, {[&] { return cancelled.load(); }}), userCanceledErr);
        canceller.join();
    });
    EXPECT_LT(std::chrono::steady_clock::now() - cancelledAt, 2s) << "wide enough for a busy machine";
    EXPECT_EQ(reply, AEDesc::ofInt32(9)) << "the late answer goes nowhere";
    manager.resumeWithSuspensionID(kept);
    EXPECT_EQ(reply, AEDesc::ofInt32(9));
}

TEST_F(NSAppleEventManagerTest, QueuedRepliesArriveAsEvents) {
    EventLoop loop;
    answerWith(4, "test"_4cc, "work"_4cc);
    AEDesc arrived;
    manager.setEventHandler([&](const auto& answer, const auto&) { arrived = answer->aeDesc(); }, "aevt"_4cc, "ansr"_4cc);
    AEDesc sent = AEDesc::appleEvent("test"_4cc, "work"_4cc, {}, 321);
    EXPECT_EQ(AESendMessage(sent, nullptr, kAEQueueReply, kAEDefaultTimeout), noErr);
    EXPECT_TRUE(arrived.isNull());
    loop.process(100ms);
    EXPECT_EQ(result(arrived), 4);
    EXPECT_EQ(arrived.attribute("rtid"_4cc)->asInt32(), 321);
}

TEST_F(NSAppleEventManagerTest, DispatchKeepsTheReplysAttributesAndWaitsForSuspendedOnes) {
    EventLoop loop;
    NSAppleEventManagerSuspensionID suspension;
    manager.setEventHandler(
        [&](const auto&, const auto& answer) {
            EXPECT_TRUE(answer->attributeDescriptorForKeyword("FDrm"_4cc)->booleanValue());
            suspension = manager.suspendCurrentAppleEvent();
            loop.post([&] { manager.resumeWithSuspensionID(suspension); });
        },
        "test"_4cc, "work"_4cc);
    reply = AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
    reply.setAttribute("FDrm"_4cc, AEDesc::ofBoolean(true));
    // The event's address is ignored.
    loop.runBeside([&] { EXPECT_EQ(AEDispatchAppleEvent(event("test"_4cc, "work"_4cc, AEDesc::ofProcess(1)), reply), noErr); });
    EXPECT_TRUE(reply.attribute("FDrm"_4cc)->asBoolean());
    EXPECT_EQ(AEDispatchAppleEvent(event("test"_4cc, "none"_4cc), reply), errAEEventNotHandled);
}

TEST_F(NSAppleEventManagerTest, AdditionsLearnThatTheSenderGaveUp) {
    const int constant = 0;
    manager.setAdditionHandler(
        [&](const AEDesc&, AEDesc&, const AEHandlerContext& context) {
            EXPECT_EQ(context.handlerRefCon, &constant);
            return static_cast<OSErr>(context.isCancelled() ? userCanceledErr : noErr);
        },
        "test"_4cc, "work"_4cc);
    EXPECT_EQ(AESendMessage(event(), &reply, kAEWaitReply, kAEDefaultTimeout, {[] { return true; }, &constant}), noErr);
    EXPECT_EQ(result(reply, "errn"_4cc), userCanceledErr);
}

// Many senders and one main thread; meant for the thread sanitizer.
TEST_F(NSAppleEventManagerTest, ManySendersAtOnce) {
    EventLoop loop;
    int handled = 0;
    manager.setEventHandler(
        [&](const auto& received, const auto& answer) {
            ++handled;
            answer->setDescriptor(received->descriptorForKeyword("----"_4cc), "----"_4cc);
        },
        "test"_4cc, "work"_4cc);
    AEDesc shared = AEDesc::list({AEDesc::ofUTF8("shared by all of them")});
    loop.runBeside([&] {
        std::vector<std::thread> senders;
        for (int i = 0; i < 8; ++i)
            senders.emplace_back([&, i] {
                for (int round = 0; round < 50; ++round) {
                    AEDesc mine = shared;
                    mine.insertItem(0, AEDesc::ofInt32(i));
                    AEDesc sent = event(), answer;
                    sent.put("----"_4cc, mine);
                    EXPECT_EQ(AESendMessage(sent, &answer, kAEWaitReply, kAEDefaultTimeout), noErr);
                    EXPECT_EQ(*answer.find("----"_4cc), mine);
                }
            });
        for (std::thread& sender : senders)
            sender.join();
    });
    EXPECT_EQ(handled, 400);
}

} // namespace quoddle

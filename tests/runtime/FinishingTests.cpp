// SPDX-License-Identifier: MIT
// The steps that follow an execution: the cases of the finishing step, with different ends of the handler, bundles and wishes to quit.
#include "Applet.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::Applet;
using test::ScriptedComponent;
using Outcome = ScriptedComponent::Outcome;
using Calls = std::vector<std::string>;

namespace {

constexpr auto kNoPane = "KVBShowStartupScreen = NO;";
constexpr auto kStay = "KVBShowStartupScreen = NO; KVBStayOpen = YES;";
constexpr auto kPaneAndStay = "KVBStayOpen = YES;";

enum class End { success, cancelled, engineFailure };

Outcome outcomeOf(End end) {
    switch (end) {
    case End::cancelled:
        return ScriptedComponent::failing(userCanceledErr, u"User canceled.");
    case End::engineFailure:
        return {{}, noErr, {}, {}, errOSASystemError};
    default:
        return {};
    }
}

/// Runs an event of the applet's own, with or without a completion.
void runOneEvent(Applet& applet, bool isRunHandler, AppDelegate::Completion completion = {}) {
    const auto event = isRunHandler ? nullptr : NSAppleEventDescriptor::appleEventWithEventClass("misc"_4cc, "idle"_4cc);
    applet.delegate->_respondToEventInBackground(event, std::move(completion));
}

} // namespace

TEST(Finishing, OwnEvents) {
    struct Row {
        const char *name, *handlers, *info;
        bool isRunHandler;
        End end;
        bool triedToQuit;
        QStringList application, window; ///< the calls that the application and the window get
        bool ended;
        int idleCalls;
        bool stopHidden, stillTried;
        Calls calls;
    };
    const QStringList last{u"last"_s};
    const QStringList ends{u"terminate: now"_s};
    const QStringList refused{u"terminate reply: 0"_s};
    const QStringList granted{u"terminate reply: 1"_s};
    // clang-format off
    const Row table[] = {
        {"one-shot",                       "run",      kNoPane,      true,  End::success,       false, {},      last, false, 0, false, false, {"run"}},
        {"one-shot, cancelled",            "run",      kNoPane,      true,  End::cancelled,     false, ends,    {},   true,  0, false, false, {"run"}},
        {"one-shot, the engine failed",    "run",      kNoPane,      true,  End::engineFailure, false, {},      last, false, 0, false, false, {"run"}},
        {"stays open",                     "run",      kStay,        true,  End::success,       false, {},      last, false, 0, true,  false, {"run"}},
        {"stays open, cancelled",          "run",      kStay,        true,  End::cancelled,     false, {},      last, false, 0, true,  false, {"run"}},
        {"with idle handler",              "run idle", kStay,        true,  End::success,       false, {},      last, false, 1, true,  false, {"run"}},
        {"with idle handler, after event", "run idle", kStay,        false, End::success,       false, {},      last, false, 0, true,  false, {"idle"}},
        {"with idle handler and pane",     "run idle", kPaneAndStay, true,  End::success,       false, {},      last, false, 0, false, false, {"run"}},
        {"quit came, ended by itself",     "run",      kNoPane,      true,  End::success,       true,  refused, last, false, 0, true,  false, {"run"}},
        {"the same with a pane",           "run",      kPaneAndStay, true,  End::success,       true,  refused, last, false, 0, false, false, {"run"}},
        {"quit came, cancelled",           "run",      kStay,        true,  End::cancelled,     true,  granted, {},   true,  0, false, true,  {"run"}},
        {"quit came, the engine failed",   "run",      kStay,        true,  End::engineFailure, true,  refused, last, false, 0, true,  false, {"run"}},
    };
    // clang-format on
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        Applet applet({.handlers = row.handlers, .info = row.info});
        applet.delegate->_setupApplication(false);
        applet.delegate->setScriptStarted(true);
        applet.window->stopEnabled = false;
        for (const char* name : {"run", "idle"})
            ScriptedComponent::sHandlers[name] = [&row](ScriptedComponent::Run&) { return outcomeOf(row.end); };
        runOneEvent(applet, row.isRunHandler);
        applet.delegate->setApplicationTriedToQuit(row.triedToQuit);
        applet.windowLog.clear();
        applet.settle();
        EXPECT_EQ(applet.application.log, row.application);
        EXPECT_EQ(applet.windowLog, row.window);
        EXPECT_EQ(applet.ended(), row.ended);
        EXPECT_EQ(applet.pendingIdleCalls(), row.idleCalls);
        EXPECT_EQ(applet.window->stopHidden, row.stopHidden);
        EXPECT_EQ(applet.delegate->applicationTriedToQuit(), row.stillTried);
        EXPECT_EQ(ScriptedComponent::calls(), row.calls);
    }
}

TEST(Finishing, ACancelledRunWithAQuitHandlerCallsIt) {
    Applet applet({.handlers = "run quit", .info = kStay});
    applet.delegate->_setupApplication(false);
    applet.delegate->setScriptStarted(true);
    ScriptedComponent::sHandlers["run"] = [](ScriptedComponent::Run&) { return outcomeOf(End::cancelled); };
    runOneEvent(applet, true);
    applet.delegate->setApplicationTriedToQuit(true);
    applet.settle();
    EXPECT_EQ(ScriptedComponent::calls(), (Calls{"run", "quit"}));
    // The first refusal is for the run, the second for the quit handler, which has ended without passing the quit on.
    EXPECT_EQ(applet.application.log, (QStringList{u"terminate reply: 0"_s, u"terminate reply: 0"_s}));
    EXPECT_EQ(applet.application.refusals, 1);
    EXPECT_FALSE(applet.delegate->applicationTriedToQuit());
    EXPECT_FALSE(applet.ended());
}

TEST(Finishing, AScriptErrorShowsOneAlertAndEndsTheApplet) {
    for (const bool visible : {true, false}) {
        for (const bool isRunHandler : {true, false}) {
            SCOPED_TRACE(testing::Message() << visible << isRunHandler);
            Applet applet({.handlers = "run idle", .info = kStay});
            applet.delegate->_setupApplication(false);
            applet.delegate->setScriptStarted(true);
            applet.window->visible = visible;
            ScriptedComponent::sHandlers["run"] = ScriptedComponent::sHandlers["idle"] = [](ScriptedComponent::Run&) {
                return ScriptedComponent::failing(-1728, u"100% of it");
            };
            OSStatus told = noErr;
            bool endedBefore = false;
            runOneEvent(applet, isRunHandler, [&](const QXOSAIDRef&, const QXOSAErrorInfoRef& error) {
                told = error ? error->error() : noErr;
                endedBefore = applet.ended();
            });
            applet.settle();
            ASSERT_EQ(applet.alerts.shown.size(), 1);
            EXPECT_EQ(applet.alerts.shown[0].messageText, u"RuntimeErrorMessage"_s); // a key without text stands for itself
            EXPECT_EQ(applet.alerts.shown[0].informativeText, u"because: 100% of it"_s);
            EXPECT_EQ(applet.alerts.shown[0].buttonTitle, u"QuitButton"_s);
            EXPECT_EQ(applet.alerts.modal, !visible);
            EXPECT_EQ(applet.ended(), !visible);
            applet.alerts.dismiss();
            EXPECT_EQ(told, -1728);
            EXPECT_FALSE(endedBefore);
            EXPECT_TRUE(applet.ended());
        }
    }
}

TEST(Finishing, ExecutionsNeverOverlapAndKeepTheirOrder) {
    Applet applet({.handlers = "run idle", .info = kStay});
    applet.delegate->_setupApplication(false);
    std::atomic<int> inside = 0;
    std::atomic<bool> overlapped = false;
    ScriptedComponent::sHandlers["run"] = ScriptedComponent::sHandlers["idle"] = [&](ScriptedComponent::Run& run) {
        overlapped = overlapped || ++inside > 1;
        EXPECT_FALSE(run.isAppletQuitting()); // reset at the start of each execution
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        --inside;
        return Outcome{AEDesc::ofInt32(7)};
    };
    QStringList finished;
    for (const bool isRunHandler : {true, false, false, true})
        runOneEvent(applet, isRunHandler, [&finished](const QXOSAIDRef& result, const QXOSAErrorInfoRef& error) {
            finished << QString::number(result ? result->int32Value() : 0) + (error ? u" error"_s : QString());
        });
    EXPECT_TRUE(applet.delegate->_isRespondingToScript());
    applet.settle();
    EXPECT_FALSE(applet.delegate->_isRespondingToScript());
    EXPECT_EQ(ScriptedComponent::calls(), (Calls{"run", "idle", "idle", "run"}));
    EXPECT_EQ(finished, (QStringList{u"7"_s, u"7"_s, u"7"_s, u"7"_s}));
    EXPECT_FALSE(overlapped);
}

namespace {

/// Calls one of the script's handlers like another application.
AEDesc callHandler(Applet& applet, const std::string& name) {
    AEDesc event = AEDesc::appleEvent("ascr"_4cc, "psbr"_4cc, AEDesc::ofCurrentProcess());
    event.put("snam"_4cc, AEDesc::ofUTF8(name));
    AEDesc reply;
    std::atomic<bool> answered = false;
    std::thread caller([&] {
        EXPECT_EQ(AESendMessage(event, &reply, kAEWaitReply, 60 * 5), noErr);
        answered = true;
    });
    EXPECT_TRUE(Applet::eventually([&] { return answered.load(); }));
    caller.join();
    applet.settle();
    return reply;
}

} // namespace

TEST(IncomingCall, IsAnsweredWithResultOrError) {
    Applet applet({.handlers = "run greet fail cancel nothing", .info = kStay});
    applet.launch();
    applet.settle();
    applet.windowLog.clear();
    ScriptedComponent::sHandlers["greet"] = [](ScriptedComponent::Run&) { return Outcome{AEDesc::ofText(u"hello")}; };
    ScriptedComponent::sHandlers["fail"] = [](ScriptedComponent::Run&) {
        Outcome outcome = ScriptedComponent::failing(42, u"no good");
        outcome.particulars = {{"erob"_4cc, AEDesc::ofInt32(1)},
                               {"ptlr"_4cc, AEDesc::ofInt32(2)},
                               {"erap"_4cc, AEDesc::ofInt32(3)},
                               {"errt"_4cc, AEDesc::ofType("list"_4cc)}};
        return outcome;
    };
    ScriptedComponent::sHandlers["cancel"] = [](ScriptedComponent::Run&) { return outcomeOf(End::cancelled); };

    const AEDesc greeting = callHandler(applet, "greet");
    ASSERT_TRUE(greeting.find("----"_4cc));
    EXPECT_EQ(greeting.find("----"_4cc)->asUTF8(), "hello");
    EXPECT_EQ(greeting.find("errn"_4cc)->asInt32(), 0);

    const AEDesc failure = callHandler(applet, "fail");
    EXPECT_FALSE(failure.find("----"_4cc));
    EXPECT_EQ(failure.find("errn"_4cc)->asUTF8(), "no good"); // the message stands in the place of the number
    EXPECT_FALSE(failure.find("errs"_4cc));
    EXPECT_EQ(failure.find("erob"_4cc)->asInt32(), 1);
    EXPECT_EQ(failure.find("ptlr"_4cc)->asInt32(), 2);
    EXPECT_EQ(failure.find("erap"_4cc)->asInt32(), 3);
    EXPECT_EQ(failure.find("errt"_4cc)->asType(), "list"_4cc);

    EXPECT_EQ(callHandler(applet, "cancel").find("errn"_4cc)->asUTF8(), "User canceled.");
    EXPECT_EQ(callHandler(applet, "nothing").find("errn"_4cc)->asInt32(), 0);

    EXPECT_EQ(applet.windowLog, QStringList()); // no pane changes, no alert comes, the applet goes on
    EXPECT_TRUE(applet.alerts.shown.isEmpty());
    EXPECT_FALSE(applet.ended());
}

TEST(IncomingCall, WaitsForTheHandlerThatRuns) {
    Applet applet({.handlers = "run greet", .info = kStay});
    std::atomic<bool> mayEnd = false;
    ScriptedComponent::sHandlers["run"] = [&](ScriptedComponent::Run&) {
        while (!mayEnd)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return Outcome();
    };
    applet.launch();
    std::atomic<bool> answered = false;
    AEDesc event = AEDesc::appleEvent("ascr"_4cc, "psbr"_4cc, AEDesc::ofCurrentProcess());
    event.put("snam"_4cc, AEDesc::ofText(u"greet"));
    std::thread caller([&] {
        AEDesc reply;
        EXPECT_EQ(AESendMessage(event, &reply, kAEWaitReply, 60 * 5), noErr);
        answered = true;
    });
    for (int turn = 0; turn < 10; ++turn)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    EXPECT_FALSE(answered);
    mayEnd = true;
    EXPECT_TRUE(Applet::eventually([&] { return answered.load(); }));
    caller.join();
    EXPECT_EQ(ScriptedComponent::calls(), (Calls{"run", "greet"}));
}

TEST(IncomingCall, ThatAQuitStopsIsAnsweredAndSoIsTheQuit) {
    struct {
        const char *name, *handlers;
        bool stops; ///< whether the handler ends when it is told to stop
        bool ended;
        Calls calls;
    } const table[] = {
        {"stopped", "run work", true, true, {"run", "work"}},
        {"goes on to its end", "run work", false, false, {"run", "work"}},
        {"stopped, with a quit handler", "run work quit", true, false, {"run", "work", "quit"}},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        Applet applet({.handlers = row.handlers, .info = kStay});
        applet.launch();
        applet.settle();
        ScriptedComponent::sHandlers["work"] = [&](ScriptedComponent::Run& run) {
            const Outcome stopped = run.workUntilStopped();
            return row.stops ? stopped : Outcome{AEDesc::ofInt32(1)};
        };
        AEDesc event = AEDesc::appleEvent("ascr"_4cc, "psbr"_4cc, AEDesc::ofCurrentProcess());
        event.put("snam"_4cc, AEDesc::ofText(u"work"));
        AEDesc reply;
        std::thread caller([&] { EXPECT_EQ(AESendMessage(event, &reply, kAEWaitReply, 60 * 5), noErr); });
        EXPECT_TRUE(Applet::eventually([] { return ScriptedComponent::calls().size() == 2; }));
        applet.windowLog.clear();
        applet.application.terminate();
        EXPECT_TRUE(Applet::eventually([&] { return applet.application.log.size() >= 2; })) << "the quit waits for its answer";
        caller.join();
        applet.settle();
        EXPECT_EQ(applet.application.log.value(1), row.ended ? u"terminate reply: 1"_s : u"terminate reply: 0"_s);
        EXPECT_EQ(applet.ended(), row.ended);
        EXPECT_EQ(ScriptedComponent::calls(), row.calls);
        EXPECT_TRUE(reply.find("errn"_4cc));
    }
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "Applet.h"

#include "platform/foundation/MainThread.h"

#include <gtest/gtest.h>

#include <thread>

#include <QCoreApplication>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::Applet;
using test::ScriptedComponent;
using Outcome = ScriptedComponent::Outcome;
using Calls = std::vector<std::string>;
using Reply = NSApplicationTerminateReply;

namespace {

constexpr auto kNoPane = "KVBShowStartupScreen = NO;";
constexpr auto kStay = "KVBShowStartupScreen = NO; KVBStayOpen = YES;";

Outcome untilStopped(ScriptedComponent::Run& run) {
    return run.workUntilStopped();
}

bool hasBegun(const std::string& handler) {
    return Applet::eventually([&] {
        const Calls calls = ScriptedComponent::calls();
        return std::find(calls.begin(), calls.end(), handler) != calls.end();
    });
}

} // namespace

TEST(RunButton, StartsWhatTheScriptHas) {
    struct {
        const char *name, *handlers, *info;
        QStringList files; ///< files that the launch brings
        Calls calls;
        bool ended;
        int idleCalls;
    } const table[] = {
        {"run", "run", "", {}, {"run"}, true, 0},
        {"run and quit: kept", "run quit", "", {}, {"run"}, false, 0},
        {"run, stays open", "run", "KVBStayOpen = YES;", {}, {"run"}, false, 0},
        {"run and idle: idle at once", "run idle", "KVBStayOpen = YES;", {}, {"run"}, false, 1},
        {"idle only", "idle", "KVBStayOpen = YES;", {}, {}, false, 1},
        {"droplet", "open", "", {}, {}, false, 0},
        {"droplet with run handler", "open run", "", {}, {"run"}, false, 0},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        Applet applet({.handlers = row.handlers, .info = row.info});
        applet.launch(row.files);
        applet.delegate->runMainScript();
        EXPECT_TRUE(applet.delegate->scriptStarted());
        applet.settle();
        EXPECT_EQ(ScriptedComponent::calls(), row.calls);
        EXPECT_EQ(applet.ended(), row.ended);
        EXPECT_EQ(applet.pendingIdleCalls(), row.idleCalls);
    }
}

TEST(RunButton, TakesFilesThatWereHeldBack) {
    Applet applet({.handlers = "open run idle", .info = "KVBStayOpen = YES;"});
    applet.delegate->_setupApplication(false);
    applet.delegate->setFilenamesToOpen(QStringList{u"/a"_s});
    applet.delegate->runMainScript();
    applet.settle();
    EXPECT_EQ(ScriptedComponent::calls(), (Calls{"open"}));
    EXPECT_FALSE(applet.delegate->filenamesToOpen());
    EXPECT_EQ(applet.pendingIdleCalls(), 1);
}

TEST(Idle, TheResultSaysWhenToComeBack) {
    struct {
        const char* name;
        Outcome outcome;
        std::int64_t seconds;
        bool again;
    } const table[] = {
        {"5", {AEDesc::ofInt32(5)}, 5, true},
        {"64 bits", {AEDesc::ofInt64(6)}, 6, true},
        {"0.9", {AEDesc::ofDouble(0.9)}, 0, true},
        {"-0.9 is 0 too", {AEDesc::ofDouble(-0.9)}, 0, true},
        {"-1", {AEDesc::ofInt32(-1)}, -1, false},
        {"nothing", {}, 30, true},
        {"text", {AEDesc::ofText(u"7")}, 30, true},
        {"infinity", {AEDesc::ofDouble(HUGE_VAL)}, 1'000'000'000'000'000, true},
        {"cancelled", ScriptedComponent::failing(userCanceledErr, u""), 30, false},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        Applet applet({.handlers = "idle", .info = kStay});
        ScriptedComponent::sHandlers["idle"] = [&row](ScriptedComponent::Run&) { return row.outcome; };
        applet.launch();
        applet.advance(0.9);
        EXPECT_TRUE(ScriptedComponent::calls().empty());
        applet.advance(0.1); // a second after the launch
        applet.settle();
        EXPECT_EQ(ScriptedComponent::calls(), (Calls{"idle"}));
        EXPECT_EQ(applet.delegate->idleSeconds(), row.seconds);
        EXPECT_EQ(applet.pendingIdleCalls(), row.again);
        if (row.again && row.seconds <= 30) {
            applet.advance(static_cast<double>(row.seconds));
            applet.settle();
            EXPECT_EQ(ScriptedComponent::calls().size(), 2u);
        }
    }
}

TEST(Idle, LateCallsDoNotAddUp) {
    Applet applet({.handlers = "idle", .info = kStay});
    ScriptedComponent::sHandlers["idle"] = [](ScriptedComponent::Run&) { return Outcome{AEDesc::ofInt32(1)}; };
    applet.launch();
    // The clock is looked at every 30 ms, so each call ends a little late.
    constexpr double kStep = 0.03;
    constexpr int kSeconds = 500;
    for (int step = 0; step * kStep < kSeconds; ++step) {
        applet.advance(kStep);
        if (applet.pendingIdleCalls() == 0)
            applet.settle();
    }
    EXPECT_NEAR(static_cast<double>(ScriptedComponent::calls().size()), kSeconds, 1);
    // After a handler that takes long, the delay that it asked for begins at its end.
    ScriptedComponent::sHandlers["idle"] = [&applet](ScriptedComponent::Run&) {
        MainThread::dispatchSync([&applet] { applet.advance(10); });
        return Outcome{AEDesc::ofInt32(5)};
    };
    applet.advance(1);
    applet.settle();
    const std::size_t calls = ScriptedComponent::calls().size();
    applet.advance(4.9);
    applet.settle();
    EXPECT_EQ(ScriptedComponent::calls().size(), calls);
    applet.advance(0.2);
    applet.settle();
    EXPECT_EQ(ScriptedComponent::calls().size(), calls + 1);
}

TEST(Stop, StopsOrEndsOrAsks) {
    struct {
        const char *name, *handlers, *info;
        bool running;
        Calls calls;
        QStringList application;
    } const table[] = {
        {"one-shot at work: cancelled, then ended", "run", kNoPane, true, {"run"}, {u"terminate: now"_s}},
        {"stay-open at work: cancelled", "run", kStay, true, {"run"}, {}},
        {"nothing at work, no idle handler: ended", "run", kStay, false, {"run"}, {u"terminate: now"_s}},
        {"nothing at work, idle and quit handler: asked", "run idle quit", kStay, false, {"run", "quit"}, {}},
        {"nothing at work, idle handler only", "run idle", kStay, false, {"run"}, {}},
        {"nothing at work, quit handler only: the question leads to it",
         "run quit",
         kStay,
         false,
         {"run", "quit"},
         {u"terminate: cancel"_s, u"terminate reply: 0"_s}},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        Applet applet({.handlers = row.handlers, .info = row.info});
        if (row.running)
            ScriptedComponent::sHandlers["run"] = &untilStopped;
        applet.launch();
        ASSERT_TRUE(hasBegun("run"));
        if (!row.running)
            applet.settle();
        applet.delegate->stopRunningScript();
        EXPECT_TRUE(applet.delegate->userStoppedScript());
        applet.settle();
        EXPECT_EQ(ScriptedComponent::calls(), row.calls);
        EXPECT_EQ(applet.application.log, row.application);
        EXPECT_TRUE(applet.alerts.shown.isEmpty()); // a cancellation is no error
    }
}

TEST(Terminate, FirstRuleThatApplies) {
    {
        Applet applet({.handlers = "run", .info = kStay});
        EXPECT_EQ(applet.delegate->applicationShouldTerminate(), Reply::now) << "before anything was set up";
    }
    {
        Applet applet({.handlers = "run quit"});
        applet.launch();
        EXPECT_EQ(applet.delegate->applicationShouldTerminate(), Reply::now) << "nothing has started";
        applet.delegate->setDisplayingPanel(true);
        EXPECT_EQ(applet.delegate->applicationShouldTerminate(), Reply::cancel) << "a panel is up";
    }
    {
        Applet applet({.handlers = "run", .info = kStay});
        applet.launch();
        applet.settle();
        EXPECT_EQ(applet.delegate->applicationShouldTerminate(), Reply::now) << "no quit handler";
        EXPECT_FALSE(applet.delegate->applicationTriedToQuit());
    }
    {
        Applet applet({.handlers = "run quit", .info = kStay});
        ScriptedComponent::sHandlers["quit"] = &untilStopped;
        applet.launch();
        applet.settle();
        EXPECT_EQ(applet.delegate->applicationShouldTerminate(), Reply::cancel) << "the quit handler decides";
        EXPECT_TRUE(applet.delegate->applicationTriedToQuit());
        EXPECT_TRUE(applet.delegate->runningQuitHandler());
        EXPECT_EQ(applet.delegate->applicationShouldTerminate(), Reply::now) << "the quit handler is running";
        ASSERT_TRUE(hasBegun("quit"));
        AppDelegate::cancelScripts();
    }
}

TEST(Terminate, AHandlerAtWorkIsToldAndStopped) {
    for (const bool hasQuitHandler : {false, true}) {
        SCOPED_TRACE(hasQuitHandler);
        Applet applet({.handlers = hasQuitHandler ? "run quit" : "run", .info = kStay});
        std::atomic<bool> toldToQuit = false;
        ScriptedComponent::sHandlers["run"] = [&](ScriptedComponent::Run& run) {
            const Outcome outcome = run.workUntilStopped();
            toldToQuit = run.isAppletQuitting();
            return outcome;
        };
        std::atomic<bool> quitHandlerTold = true;
        ScriptedComponent::sHandlers["quit"] = [&](ScriptedComponent::Run& run) {
            quitHandlerTold = run.isAppletQuitting();
            run.continueEvent(); // passes the quit on to the framework
            return Outcome();
        };
        // A continued quit reaches the framework's own quit handler.
        auto& manager = NSAppleEventManager::sharedAppleEventManager();
        manager.setEventHandler([&](const auto&, const auto&) { applet.application.terminate(); }, "aevt"_4cc, "quit"_4cc);
        applet.launch();
        ASSERT_TRUE(hasBegun("run"));
        applet.application.terminate();
        EXPECT_EQ(applet.application.log, (QStringList{u"terminate: later"_s}));
        EXPECT_TRUE(Applet::eventually([&] { return applet.ended(); }));
        applet.settle();
        EXPECT_TRUE(toldToQuit);
        if (hasQuitHandler) {
            EXPECT_EQ(ScriptedComponent::calls(), (Calls{"run", "quit"}));
            EXPECT_EQ(applet.application.log, (QStringList{u"terminate: later"_s, u"terminate reply: 0"_s, u"terminate: now"_s}));
            EXPECT_FALSE(quitHandlerTold);
        } else {
            EXPECT_EQ(applet.application.log, (QStringList{u"terminate: later"_s, u"terminate reply: 1"_s}));
        }
        manager.removeEventHandlerForEventClass("aevt"_4cc, "quit"_4cc);
    }
}

TEST(Terminate, AQuitThatIsNotPassedOnIsRefused) {
    for (const bool fails : {false, true}) {
        SCOPED_TRACE(fails);
        Applet applet({.handlers = "run quit", .info = kStay});
        ScriptedComponent::sHandlers["quit"] = [&](ScriptedComponent::Run&) {
            return fails ? ScriptedComponent::failing(userCanceledErr, u"") : Outcome();
        };
        applet.launch();
        applet.settle();
        applet.windowLog.clear();
        applet.application.terminate();
        EXPECT_EQ(applet.windowLog, (QStringList{u"progress"_s}));
        applet.settle();
        EXPECT_EQ(applet.windowLog.value(1), u"last"_s);
        EXPECT_FALSE(applet.ended());
        EXPECT_FALSE(applet.delegate->runningQuitHandler());
    }
}

TEST(Terminate, AQuitHandlerIsAskedOnceWhetherOrNotTheStoppedRunWasAllTheWork) {
    for (const char* info : {kNoPane, kStay}) {
        SCOPED_TRACE(info);
        Applet applet({.handlers = "run quit", .info = info});
        ScriptedComponent::sHandlers["run"] = &untilStopped;
        applet.launch();
        ASSERT_TRUE(hasBegun("run"));
        applet.application.terminate();
        applet.settle();
        EXPECT_EQ(ScriptedComponent::calls(), (Calls{"run", "quit"}));
        EXPECT_FALSE(applet.ended()) << "it has refused";
    }
}

TEST(Terminate, AQuitHandlerThatFailsIsNotAskedAgain) {
    Applet applet({.handlers = "run quit", .info = kStay});
    ScriptedComponent::sHandlers["quit"] = [](ScriptedComponent::Run&) { return ScriptedComponent::failing(501, u"It went wrong."); };
    applet.launch();
    applet.settle();
    applet.application.terminate();
    applet.settle();
    EXPECT_FALSE(applet.ended());
    applet.alerts.dismiss();
    applet.settle();
    EXPECT_TRUE(applet.ended());
    EXPECT_EQ(applet.alerts.shown.size(), 1);
    EXPECT_EQ(ScriptedComponent::calls(), (Calls{"run", "quit"}));
}

TEST(Terminate, WhileTheScriptResumesNothingCountsAsRunning) {
    Applet applet({.handlers = "open idle run quit", .info = kStay});
    applet.launch();
    applet.settle();
    applet.delegate->mainScript()->component()->setResuming(true);
    EXPECT_FALSE(applet.delegate->hasOpenHandler() || applet.delegate->hasIdleHandler() || applet.delegate->hasRunHandler() ||
                 applet.delegate->hasQuitHandler());
    applet.delegate->mainScript()->component()->setResuming(false);
    EXPECT_TRUE(applet.delegate->hasOpenHandler() && applet.delegate->hasIdleHandler() && applet.delegate->hasRunHandler() &&
                applet.delegate->hasQuitHandler());
}

TEST(LastWindow, FirstRuleThatApplies) {
    struct {
        const char *name, *info;
        bool userClosed, started, running, answer;
    } const table[] = {
        {"closed by the user", kStay, true, true, true, true},
        {"stays open without pane", kStay, false, true, false, false},
        {"started, nothing runs", kNoPane, false, true, false, true},
        {"started, something runs", kNoPane, false, true, true, false},
        {"pane, stays open, something runs", "KVBStayOpen = YES;", false, true, true, false},
        {"not started", kNoPane, false, false, false, true},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        Applet applet({.handlers = "run", .info = row.info});
        applet.delegate->_setupApplication(false);
        applet.delegate->setUserClosedWindow(row.userClosed);
        applet.delegate->setScriptStarted(row.started);
        ScriptedComponent::sHandlers["run"] = &untilStopped;
        if (row.running) {
            applet.delegate->_respondToEventInBackground(nullptr);
            ASSERT_TRUE(hasBegun("run"));
        }
        EXPECT_EQ(applet.delegate->applicationShouldTerminateAfterLastWindowClosed(), row.answer);
        EXPECT_FALSE(applet.delegate->userClosedWindow());
        AppDelegate::cancelScripts();
    }
}

TEST(WindowClose, IsAStopRequest) {
    struct {
        const char *name, *handlers;
        bool running;
        QStringList application;
        bool ended;
    } const table[] = {
        {"at work", "run", true, {u"terminate: later"_s, u"terminate reply: 1"_s}, true},
        {"at work, with quit handler", "run quit", true, {u"terminate: later"_s, u"terminate reply: 0"_s, u"terminate reply: 0"_s}, false},
        {"nothing at work", "run", false, {u"terminate: now"_s}, true},
        {"nothing at work, idle handler", "run idle", false, {u"terminate: now"_s}, true},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        std::atomic<bool> wasAsked = false;
        Applet applet({.handlers = row.handlers, .info = kStay});
        if (row.running)
            ScriptedComponent::sHandlers["run"] = [&wasAsked](ScriptedComponent::Run& run) {
                const Outcome outcome = run.workUntilStopped();
                while (!wasAsked) // the handler is still running when the question comes
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                return outcome;
            };
        applet.launch();
        ASSERT_TRUE(hasBegun("run"));
        if (!row.running)
            applet.settle();
        const int dialog = 0;
        NSNotificationCenter::defaultCenter().postNotification(NSWindowWillCloseNotification, &dialog);
        EXPECT_FALSE(applet.delegate->userStoppedScript()) << "another window";
        applet.closeWindow();
        EXPECT_TRUE(applet.delegate->userStoppedScript());
        wasAsked = true;
        applet.settle();
        EXPECT_EQ(applet.application.log, row.application);
        EXPECT_EQ(applet.ended(), row.ended);
    }
}

TEST(WindowClose, StopsOnceAndNotWhatTheScriptDoesAboutIt) {
    Applet applet({.handlers = "run", .info = kStay});
    std::atomic<bool> stopped = false, mayEnd = false;
    std::atomic<int> stoppedAgain = 0;
    ScriptedComponent::sHandlers["run"] = [&](ScriptedComponent::Run& run) {
        const Outcome outcome = run.workUntilStopped();
        stopped = true;
        while (!mayEnd)
            stoppedAgain += run.yield() != noErr;
        return outcome;
    };
    applet.launch();
    ASSERT_TRUE(hasBegun("run"));
    auto tidiesUp = [&](bool again) {
        for (int tries = 0; again && !stoppedAgain && tries < 5000; ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        EXPECT_EQ(stoppedAgain, again);
    };
    // The script hears of the first notice before the question comes.
    NSNotificationCenter::defaultCenter().postNotification(NSWindowWillCloseNotification, applet.window->windowObject());
    while (!stopped)
        std::this_thread::yield();
    EXPECT_TRUE(applet.delegate->applicationShouldTerminateAfterLastWindowClosed());
    applet.application.terminate();
    tidiesUp(false);
    // A question in a later turn of the loop stops the script again.
    QCoreApplication::processEvents();
    applet.application.terminate();
    tidiesUp(true);
    mayEnd = true;
    EXPECT_TRUE(Applet::eventually([&] { return applet.ended(); }));
}

TEST(RuntimeError, TwoInQuickSuccessionShowOneAlert) {
    Applet applet({.handlers = "run", .info = kStay});
    applet.launch();
    applet.settle();
    applet.window->visible = true;
    const auto error = QXOSAErrorInfo::errorInfoForOSStatus(-50);
    applet.delegate->_displayRuntimeError(error);
    applet.delegate->_displayRuntimeError(error);
    EXPECT_EQ(applet.alerts.shown.size(), 1);
    applet.alerts.dismiss();
    EXPECT_TRUE(applet.ended());
}

TEST(OpenFiles, RunsAllOrNothing) {
    const char *const kHook = "appletfileisacceptable", *const kChoosy = "open appletfileisacceptable";
    struct {
        const char *name, *handlers, *info;
        bool visible;
        QStringList files;
        Outcome outcome;
        QStringList application;
        Calls calls;
        int alerts;
    } const table[] = {
        {"success", "open", kStay, true, {u"/a b"_s, u"/ü"_s}, {}, {u"open reply: 0"_s}, {"open"}, 0},
        {"success, one-shot", "open", kNoPane, true, {u"/a"_s}, {}, {u"open reply: 0"_s, u"terminate: now"_s}, {"open"}, 0},
        {"cancelled", "open", kStay, true, {u"/a"_s}, ScriptedComponent::failing(userCanceledErr, u""), {u"open reply: 1"_s}, {"open"}, 0},
        {"accepted by the script", kChoosy, kStay, true, {u"/a"_s}, {}, {u"open reply: 0"_s}, {kHook, "open"}, 0},
        {"one is refused", kChoosy, kStay, true, {u"/a"_s, u"/bad"_s, u"/c"_s}, {}, {u"open reply: 2"_s}, {kHook, kHook}, 0},
        {"not decided by a cancelled question", kChoosy, kStay, true, {u"/cancel"_s}, {}, {u"open reply: 2"_s}, {kHook}, 0},
        {"the question fails", kChoosy, kStay, true, {u"/fail"_s, u"/a"_s}, {}, {u"open reply: 2"_s}, {kHook}, 1},
        {"no open handler, window seen", "run", kStay, true, {u"/a"_s}, {}, {u"open reply: 1"_s}, {}, 1},
        {"no open handler, window not seen", "run", kStay, false, {u"/a"_s}, {}, {u"terminate: now"_s, u"open reply: 1"_s}, {}, 0},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        Applet applet({.handlers = row.handlers, .info = row.info});
        applet.delegate->_setupApplication(false);
        applet.window->visible = row.visible;
        QStringList received;
        ScriptedComponent::sHandlers["open"] = [&](ScriptedComponent::Run& run) {
            for (const AEDesc& file : run.event.find("----"_4cc)->items())
                received << QString::fromStdString(file.asFilePath().value_or("?"));
            return row.outcome;
        };
        ScriptedComponent::sHandlers[kHook] = [](ScriptedComponent::Run& run) {
            const std::string path = run.event.find("----"_4cc)->itemAt(1)->asFilePath().value_or("?");
            if (path == "/fail" || path == "/cancel")
                return ScriptedComponent::failing(path == "/fail" ? 7 : userCanceledErr, u"");
            return Outcome{AEDesc::ofBoolean(path != "/bad")};
        };
        applet.delegate->applicationOpenFiles(row.files);
        EXPECT_TRUE(applet.delegate->scriptStarted());
        applet.settle();
        EXPECT_EQ(applet.application.log, row.application);
        EXPECT_EQ(ScriptedComponent::calls(), row.calls);
        EXPECT_EQ(applet.alerts.shown.size(), row.alerts);
        EXPECT_EQ(received, std::ranges::count(row.calls, "open") == 0 ? QStringList() : row.files);
        if (row.alerts) {
            const bool isRuntimeError = row.handlers == kChoosy;
            EXPECT_EQ(applet.alerts.shown[0].messageText, isRuntimeError ? u"RuntimeErrorMessage"_s : u"NoOpenHandlerMessage"_s);
            EXPECT_EQ(applet.alerts.shown[0].informativeText, isRuntimeError ? u"because: "_s : u"NoOpenHandlerInformation"_s);
            applet.alerts.dismiss();
            EXPECT_TRUE(applet.ended());
        }
    }
}

TEST(OpenFiles, TheTestModeWorksOnAnotherApplet) {
    QTemporaryDir other;
    QString answer;
    Applet applet({.handlers = "open run", .info = kNoPane});
    applet.chooseTestApplet = [&answer] { return answer; };
    const auto own = applet.delegate->mainBundle();
    applet.delegate->applicationOpenFiles({u"/a"_s, u"QUODDLE_DEBUG"_s}); // the name counts only as the first file
    EXPECT_EQ(applet.delegate->mainBundle(), own);
    applet.settle();
    EXPECT_EQ(ScriptedComponent::calls(), (Calls{"open"}));

    answer = other.path();
    applet.delegate->applicationOpenFiles({u"QUODDLE_DEBUG"_s, u"/a"_s});
    EXPECT_EQ(applet.delegate->mainBundle()->bundlePath(), other.path());
    applet.settle();
    EXPECT_EQ(ScriptedComponent::calls(), (Calls{"open"})); // no handler is run

    Applet cancelled({.handlers = "open run", .info = kNoPane});
    cancelled.launch({u"QUODDLE_DEBUG"_s});
    EXPECT_TRUE(cancelled.ended());
    EXPECT_TRUE(ScriptedComponent::calls().empty());
}

TEST(OpenFiles, AFailingHandlerAnswersWhenItsAlertIsGone) {
    Applet applet({.handlers = "open", .info = kStay});
    applet.launch();
    applet.window->visible = true;
    ScriptedComponent::sHandlers["open"] = [](ScriptedComponent::Run&) { return ScriptedComponent::failing(-43, u"gone"); };
    applet.delegate->applicationOpenFiles({u"/a"_s});
    applet.settle();
    EXPECT_EQ(applet.application.log, QStringList());
    applet.alerts.dismiss();
    EXPECT_EQ(applet.application.log, (QStringList{u"open reply: 2"_s, u"terminate: now"_s}));
}

TEST(OpenFiles, AfterLaunchTheStartupPaneHoldsNothingBack) {
    Applet applet({.handlers = "open", .info = "KVBStayOpen = YES;"});
    applet.launch();
    applet.delegate->applicationOpenFiles({u"/a"_s});
    applet.settle();
    EXPECT_EQ(ScriptedComponent::calls(), (Calls{"open"}));
    EXPECT_EQ(applet.windowLog.last(), u"last"_s);
}

} // namespace quoddle

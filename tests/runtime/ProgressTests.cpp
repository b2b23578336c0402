// SPDX-License-Identifier: MIT
#include "Applet.h"

#include "platform/foundation/MainThread.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::Applet;
using test::ScriptedComponent;
using Outcome = ScriptedComponent::Outcome;

namespace {

constexpr auto kStay = "KVBShowStartupScreen = NO; KVBStayOpen = YES;";

/// Collects the posted snapshots in order.
class Listener {
public:
    Listener() {
        NSNotificationCenter::defaultCenter().addObserver(
            this,
            [this](const NSNotification& notification) {
                EXPECT_TRUE(MainThread::isCurrent());
                EXPECT_EQ(notification.object, AppDelegate::instance());
                snapshots << notification.userInfo;
            },
            ProgressChangedNotification);
    }
    ~Listener() { NSNotificationCenter::defaultCenter().removeObserver(this); }
    QList<QVariantMap> snapshots;
};

QVariantMap snapshot(int total, int steps, const QString& description, const QString& additional) {
    return {{u"totalSteps"_s, total}, {u"steps"_s, steps}, {u"description"_s, description}, {u"additionalDescription"_s, additional}};
}

} // namespace

TEST(Progress, IsPostedOncePerChangeAndShowsThePane) {
    Applet applet({.handlers = "run", .info = kStay});
    Listener listener;
    ScriptedComponent::sHandlers["run"] = [&](ScriptedComponent::Run& run) {
        run.yield(); // nothing was reported yet, so nothing is posted
        run.setProgress("ppgt"_4cc, AEDesc::ofInt32(8));
        run.setProgress("ppgd"_4cc, AEDesc::ofText(u" \n Copying files\r\n"));
        run.yield();
        EXPECT_EQ(listener.snapshots.size(), 1) << "the script waits until the window knows";
        run.yield(); // the report is unchanged
        run.setProgress("ppgc"_4cc, AEDesc::ofDouble(3));
        run.setProgress("ppga"_4cc, AEDesc::ofText(u"a.txt"));
        run.yield();
        run.setProgress("ppgc"_4cc, AEDesc::ofInt32(8)); // seen in the last look, after the handler has ended
        return Outcome();
    };
    applet.launch();
    EXPECT_EQ(applet.windowLog, QStringList()); // without open and quit handler there is no pane before the first progress
    applet.settle();
    EXPECT_EQ(listener.snapshots,
              (QList<QVariantMap>{snapshot(8, 0, u"Copying files"_s, u""_s), snapshot(8, 3, u"Copying files"_s, u"a.txt"_s),
                                  snapshot(8, 8, u"Copying files"_s, u"a.txt"_s)}));
    EXPECT_EQ(applet.delegate->currentProgress(), listener.snapshots.last());
    EXPECT_EQ(applet.windowLog, (QStringList{u"progress"_s, u"progress"_s, u"progress"_s, u"last"_s}));

    // The same report in a later run posts nothing. A reset to nothing is posted once something was reported.
    ScriptedComponent::sHandlers["run"] = [](ScriptedComponent::Run& run) {
        run.yield();
        for (FourCharCode number : {"ppgt"_4cc, "ppgc"_4cc})
            run.setProgress(number, AEDesc::ofInt32(0));
        for (FourCharCode words : {"ppgd"_4cc, "ppga"_4cc})
            run.setProgress(words, AEDesc::ofText(u""));
        run.yield();
        return Outcome();
    };
    applet.delegate->_respondToEventInBackground(nullptr);
    applet.settle();
    EXPECT_EQ(listener.snapshots.size(), 4);
    EXPECT_EQ(listener.snapshots.last(), snapshot(0, 0, u""_s, u""_s));
}

TEST(Progress, TheMainThreadNeverWaitsForAScriptThatWaitsForIt) {
    Applet applet({.handlers = "run", .info = kStay});
    std::atomic<bool> stop = false;
    ScriptedComponent::sHandlers["run"] = [&](ScriptedComponent::Run& run) {
        for (int i = 0; !stop; ++i) {
            run.setProgress("ppgc"_4cc, AEDesc::ofInt32(i));
            run.yield();
        }
        return Outcome();
    };
    applet.launch();
    EXPECT_TRUE(Applet::eventually([&] { return applet.delegate->currentProgress().has_value(); }));
    // The yield comes on the main thread while the script thread holds the lock, as when the main thread calls the script itself.
    for (int turn = 0; turn < 200; ++turn) {
        applet.delegate->scriptDidYield();
        QCoreApplication::processEvents();
    }
    stop = true;
    applet.settle();
}

TEST(Progress, AnEndingApplicationReleasesTheScript) {
    Applet applet({.handlers = "run", .info = kStay});
    std::atomic<int> yields = 0;
    ScriptedComponent::sHandlers["run"] = [&](ScriptedComponent::Run& run) {
        for (int i = 1; i < 100; ++i) {
            run.setProgress("ppgc"_4cc, AEDesc::ofInt32(i));
            run.yield();
            ++yields;
        }
        return Outcome();
    };
    applet.launch();
    MainThread::close(); // as after the event loop has ended
    EXPECT_TRUE(AppDelegate::waitForScripts(std::chrono::seconds(10)));
    EXPECT_EQ(yields, 99);
    MainThread::open();
}

TEST(Progress, ASheetShowsThePaneWhileAHandlerRuns) {
    Applet applet({.handlers = "run", .info = kStay});
    std::atomic<bool> stop = false;
    ScriptedComponent::sHandlers["run"] = [&](ScriptedComponent::Run&) {
        while (!stop)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return Outcome();
    };
    applet.launch();
    applet.delegate->willDisplaySheet();
    EXPECT_EQ(applet.windowLog, (QStringList{u"progress"_s}));
    stop = true;
    applet.settle();
    applet.windowLog.clear();
    applet.delegate->willDisplaySheet();
    EXPECT_EQ(applet.windowLog, QStringList());
}

} // namespace quoddle

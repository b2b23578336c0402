// SPDX-License-Identifier: MIT
#include "Shell.h"

#include "platform/appkit/ElidedLabel.h"
#include "platform/appkit/ProgressBar.h"
#include "platform/foundation/QtPrinters.h"
#include "window/ProgressViewController.h"

#include <QTest>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::ScriptedComponent;
using test::Shell;

namespace {

void post(qint64 total, qint64 steps, const QString& description = {}, const QString& additional = {}) {
    NSNotificationCenter::defaultCenter().postNotification(
        ProgressChangedNotification, nullptr,
        {{u"totalSteps"_s, total}, {u"steps"_s, steps}, {u"description"_s, description}, {u"additionalDescription"_s, additional}});
}

} // namespace

TEST(ProgressPane, ShowsSnapshots) {
    struct {
        const char* name;
        qint64 total, steps;
        QString description, additional;
        QString message, message2;
        double value;
        bool indeterminate;
    } const table[] = {
        {"some of some", 8, 3, u""_s, u""_s, u"37% completed"_s, u"3 of 8"_s, 37, false},
        {"more than all", 5, 9, u""_s, u""_s, u"100% completed"_s, u"9 of 5"_s, 100, false},
        {"no total, but words", 0, 0, u"Waiting"_s, u""_s, u"Waiting"_s, u"0 of 0"_s, 0, false},
        {"no total, further words only", 0, 0, u""_s, u"of it"_s, u"0% completed"_s, u"of it"_s, 0, false},
        {"large numbers", 1200, 1000, u""_s, u""_s, u"83% completed"_s, u"1,000 of 1,200"_s, 83, false},
        {"open end", -1, 0, u"Searching"_s, u""_s, u"Searching"_s, u""_s, 0, true},
        {"open end without words", -1, 0, u""_s, u""_s, u""_s, u""_s, 0, true},
        {"open end, counting", -1, 7, u""_s, u"seven"_s, u""_s, u"seven"_s, 0, true},
        {"steps below zero", 5, -1, u""_s, u""_s, u"0% completed"_s, u"-1 of 5"_s, 0, true},
        {"no total, steps below zero", 0, -1, u""_s, u""_s, u"0% completed"_s, u"-1 of 0"_s, 0, true},
        {"both in words", 4, 1, u"Reading"_s, u"a.txt"_s, u"Reading"_s, u"a.txt"_s, 25, false},
        {"beyond 64 bits when multiplied", 9'000'000'000'000'000'000, 4'500'000'000'000'000'000, u"x"_s, u"y"_s, u"x"_s, u"y"_s, 50, false},
        {"a percent sign in the words", 4, 1, u"100%@ %d"_s, u"%%"_s, u"100%@ %d"_s, u"%%"_s, 25, false},
    };
    Shell shell;
    ProgressViewController& pane = shell.setUp().progressViewController();
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        post(row.total, row.steps, row.description, row.additional);
        EXPECT_EQ(pane.messageView()->text(), row.message);
        EXPECT_EQ(pane.message2View()->text(), row.message2);
        EXPECT_EQ(pane.progressView()->doubleValue(), row.value);
        EXPECT_EQ(pane.progressView()->isIndeterminate(), row.indeterminate);
    }
    post(8, 3, u"Reading"_s, u"a.txt"_s);
    post(0, 5); // there is nothing to say: the bar moves and the lines stay
    EXPECT_EQ(pane.messageView()->text(), u"Reading"_s);
    EXPECT_EQ(pane.message2View()->text(), u"a.txt"_s);
    EXPECT_TRUE(pane.progressView()->isIndeterminate());
    EXPECT_EQ(pane.progressView()->doubleValue(), 0);
}

TEST(ProgressPane, IsResetForARun) {
    Shell shell;
    ProgressViewController& pane = shell.setUp().progressViewController();
    post(8, 3);
    pane.resetStopped();
    EXPECT_FALSE(pane.stopButtonEnabled());
    EXPECT_FALSE(pane.progressView()->isAnimating());
    pane.resetStarted();
    EXPECT_TRUE(pane.stopButtonEnabled());
    EXPECT_TRUE(pane.progressView()->isIndeterminate());
    EXPECT_TRUE(pane.progressView()->isAnimating());
    EXPECT_EQ(pane.messageView()->text() + pane.message2View()->text(), QString());
}

TEST(ProgressPane, StandsStillWhateverItShows) {
    Shell shell;
    AppletWindowController& controller = shell.setUp();
    controller.showProgressViewController();
    QCoreApplication::processEvents();
    ProgressViewController& pane = controller.progressViewController();
    auto geometries = [&] {
        return QList<QRect>{controller.window()->geometry(), pane.messageView()->geometry(), pane.message2View()->geometry(),
                            pane.progressView()->geometry()};
    };
    const auto before = geometries();
    for (const auto& change : std::initializer_list<std::function<void()>>{
             [] {
                 post(8, 3, u"A long text that fits into no line of a window as wide as this one is "_s.repeated(5),
                      u"Also\nlong "_s.repeated(40));
             },
             [] { post(-1, 0); }, [&] { controller.setStopButtonHidden(true); }, [&] { controller.setStopButtonEnabled(false); }}) {
        change();
        QCoreApplication::processEvents();
        EXPECT_EQ(geometries(), before);
    }
    EXPECT_EQ(controller.window()->width(), 480);
}

TEST(ProgressPane, StopIsAButtonAndTwoKeys) {
    struct {
        const char* name;
        std::function<void(AppletWindowController&)> act;
        bool stops;
    } const table[] = {
        {"click", [](AppletWindowController& c) { QTest::mouseClick(c.progressViewController().stopButton(), Qt::LeftButton); }, true},
        {"Escape", [](AppletWindowController& c) { QTest::keyClick(c.window(), Qt::Key_Escape); }, true},
        {"Control and full stop", [](AppletWindowController& c) { QTest::keyClick(c.window(), Qt::Key_Period, Qt::ControlModifier); },
         true},
        {"Escape without a button",
         [](AppletWindowController& c) {
             c.setStopButtonHidden(true);
             QTest::keyClick(c.window(), Qt::Key_Escape);
         },
         false},
        {"Escape with a dead button",
         [](AppletWindowController& c) {
             c.setStopButtonEnabled(false);
             QTest::keyClick(c.window(), Qt::Key_Escape);
         },
         false},
        {"Return", [](AppletWindowController& c) { QTest::keyClick(c.window(), Qt::Key_Return); }, false},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.name);
        Shell shell("KVBShowStartupScreen = NO; KVBStayOpen = YES;", "idle");
        AppletWindowController& controller = shell.setUp();
        controller.showProgressViewController();
        controller.window()->activateWindow();
        QCoreApplication::processEvents();
        row.act(controller);
        EXPECT_EQ(shell.delegate->userStoppedScript(), row.stops); // a key stops the script at once, as a click does
        EXPECT_TRUE(!row.stops || !controller.stopButtonEnabled());
    }
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "Shell.h"

#include "platform/appkit/rtf/RichText.h"
#include "platform/foundation/QtPrinters.h"
#include "window/ProgressViewController.h"
#include "window/StartupViewController.h"

#include <atomic>
#include <thread>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTextBrowser>
#include <QTextCursor>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::ScriptedComponent;
using test::Shell;

namespace {

/// Calls `act` as soon as the condition holds, while the application runs.
void when(std::function<bool()> condition, std::function<void()> act) {
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, condition = std::move(condition), act = std::move(act)] {
        if (!condition())
            return;
        timer->deleteLater();
        timer->stop();
        act();
    });
    timer->start(1);
}

QPushButton* visibleButton(const QString& accessibleName) {
    for (QWidget* widget : QApplication::allWidgets())
        if (auto* button = qobject_cast<QPushButton*>(widget); button && button->isVisible() && button->accessibleName() == accessibleName)
            return button;
    return nullptr;
}

} // namespace

TEST(AppletWindow, LoadsHiddenWithNameAndPlace) {
    Shell shell;
    AppletWindowController& controller = shell.setUp();
    EXPECT_EQ(shell.delegate->mainWindowController().get(), &controller);
    EXPECT_EQ(controller.mainBundle(), shell.delegate->mainBundle());
    EXPECT_FALSE(controller.isWindowVisible());
    EXPECT_EQ(controller.window()->windowTitle(), u"A & B"_s);
    EXPECT_EQ(controller.window()->frameAutosaveName(), u"applet"_s);
    EXPECT_EQ(controller.window()->contentViewController(), &controller.mainViewController());
}

TEST(AppletWindow, FadesBetweenPanesButNotWhileItAppears) {
    Shell shell("");
    AppletWindowController& controller = shell.setUp();
    NSTabViewController& tabs = controller.mainViewController();
    EXPECT_TRUE(controller.isWindowVisible()); // the startup pane has shown the window
    EXPECT_EQ(tabs.selectedTabViewItemIndex(), 0);
    EXPECT_FALSE(tabs.isInTransition());
    const QSize size = controller.window()->size();

    controller.setStopButtonEnabled(false);
    controller.setStopButtonHidden(true);
    controller.showProgressViewController();
    EXPECT_EQ(tabs.selectedTabViewItemIndex(), 1);
    EXPECT_TRUE(tabs.isInTransition());
    EXPECT_TRUE(controller.stopButtonEnabled());
    EXPECT_FALSE(controller.stopButtonHidden());
    EXPECT_EQ(controller.window()->size(), size);

    controller.showLastViewController();
    EXPECT_EQ(tabs.selectedTabViewItemIndex(), 0);
    EXPECT_FALSE(tabs.isInTransition());

    controller.window()->orderOut();
    controller.showProgressViewController();
    EXPECT_TRUE(controller.isWindowVisible());
    EXPECT_FALSE(tabs.isInTransition());
    EXPECT_EQ(tabs.transitionOptions(), NSTabViewController::TransitionOptions::crossfade);
}

TEST(AppletWindow, WithoutStartupPaneTheLastPaneIsNone) {
    Shell shell;
    AppletWindowController& controller = shell.setUp();
    controller.showProgressViewController();
    EXPECT_TRUE(controller.isWindowVisible());
    controller.showLastViewController();
    EXPECT_FALSE(controller.isWindowVisible());
    EXPECT_FALSE(shell.delegate->userClosedWindow()); // the window was hidden, not closed
}

TEST(AppletWindow, EveryControlHasANameToScreenReaders) {
    Shell shell("");
    AppletWindowController& controller = shell.setUp();
    controller.showProgressViewController();
    int controls = 0;
    for (QWidget* widget : controller.window()->findChildren<QWidget*>()) {
        const bool control = qobject_cast<QAbstractButton*>(widget) || qobject_cast<QProgressBar*>(widget);
        if (!control || widget->objectName().startsWith(u"qt_"_s))
            continue;
        ++controls;
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty())
            << widget->objectName().toStdString();
    }
    EXPECT_EQ(controls, 4); // Run, Quit, Stop and the bar
}

TEST(StartupPane, RunIsOfferedWhenThereIsSomethingToRun) {
    for (const auto& [handlers, offered] :
         std::initializer_list<std::pair<const char*, bool>>{{"run", true}, {"open", true}, {"idle", true}, {"quit", false}, {"", false}}) {
        Shell shell("", handlers);
        shell.setUp();
        QPushButton* run = visibleButton(u"Run"_s);
        ASSERT_TRUE(run) << handlers;
        EXPECT_EQ(run->isEnabled(), offered) << handlers;
    }
}

TEST(StartupPane, RunIsOutOfUseAtOnceWhenItIsPressedAndLaterForOtherHandlers) {
    Shell shell("KVBStayOpen = YES;", "run idle");
    std::atomic<bool> isOver = false;
    const auto work = [&isOver](ScriptedComponent::Run&) {
        while (!isOver)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return ScriptedComponent::Outcome();
    };
    ScriptedComponent::sHandlers["run"] = work;
    ScriptedComponent::sHandlers["idle"] = work;
    shell.setUp();
    QPushButton* run = visibleButton(u"Run"_s);
    shell.delegate->_runIdleHandler();
    EXPECT_TRUE(run->isEnabled()); // the handler may end in a moment
    EXPECT_TRUE(QTest::qWaitFor([run] { return !run->isEnabled(); }));
    isOver = true;
    EXPECT_TRUE(QTest::qWaitFor([run] { return run->isEnabled() && run->hasFocus(); }));
    isOver = false;
    run->click();
    EXPECT_FALSE(run->isEnabled());
    EXPECT_FALSE(visibleButton(u"Quit"_s)->hasFocus());
    isOver = true;
    EXPECT_TRUE(QTest::qWaitFor([run] { return run->isEnabled() && run->hasFocus(); }));
}

TEST(StartupPane, ShowsTheDescriptionThatComesFirst) {
    Shell shell("");
    shell.addResource(u"Description.rtfd/TXT.rtf"_s, "{\\rtf1{\\colortbl;\\red255\\green0\\blue0;}plain {\\cf1 red}}");
    shell.addResource(u"description.rtf"_s, "{\\rtf1 second}");
    shell.setUp();
    auto* view = shell.controller->window()->findChild<QTextBrowser*>(u"descriptionView"_s);
    ASSERT_TRUE(view && view->isVisible());
    EXPECT_EQ(view->toPlainText(), u"plain red"_s);
    const QPalette light = QApplication::palette();
    QPalette dark(QColor(40, 40, 40));
    QApplication::setPalette(dark);
    QCoreApplication::processEvents();
    const auto colorOf = [&](const QString& text) { return view->document()->find(text).charFormat().foreground().color(); };
    EXPECT_EQ(colorOf(u"plain"_s), view->palette().color(QPalette::Text));
    EXPECT_EQ(colorOf(u"red"_s), QColor(Qt::red));
    QApplication::setPalette(light);
}

TEST(StartupPane, ADescriptionOpensAtItsTopHoweverTallItsFirstLineIs) {
    for (const char* content : {"{\\rtf1\\fs2000 T\\par\\fs24 small}", "{\\rtf1\\fs700 T\\par\\fs24 small}"}) {
        Shell shell("");
        shell.addResource(u"Description.rtf"_s, content);
        shell.setUp();
        auto* view = shell.controller->window()->findChild<QTextBrowser*>(u"descriptionView"_s);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(shell.controller->window()));
        QCoreApplication::processEvents();
        EXPECT_GT(view->verticalScrollBar()->maximum(), 0) << content;
        EXPECT_EQ(view->verticalScrollBar()->value(), 0) << content;
    }
}

TEST(StartupPane, ADescriptionThatIsTooLargeIsNotLeftOutInSilence) {
    Shell shell("");
    shell.addResource(u"Description.rtf"_s, "{\\rtf1 short}");
    shell.setUp();
    auto* view = shell.controller->window()->findChild<QTextBrowser*>(u"descriptionView"_s);
    ASSERT_EQ(view->toPlainText(), u"short"_s);
    for (const auto& [large, message] :
         {std::pair(QByteArray(kLargestRichTextFile, ' '), u"The description is not shown: it is larger than 256 KiB."_s),
          std::pair(QByteArray(10'000, 'x'), u"The description is not shown: it is too long or has too many formats."_s)}) {
        shell.addResource(u"Description.rtf"_s, "{\\rtf1 " + large + "}");
        shell.controller->showProgressViewController();
        shell.controller->showStartupViewController(); // reads the description again
        EXPECT_TRUE(view->isVisible());
        EXPECT_EQ(view->toPlainText(), message);
    }
}

TEST(StartupPane, WithoutADescriptionThereIsNoEmptyField) {
    Shell shell("");
    shell.setUp();
    EXPECT_FALSE(shell.controller->window()->findChild<QTextBrowser*>(u"descriptionView"_s)->isVisible());
}

TEST(Applet, RunsFromItsButtonShowsProgressAndEndsByItsQuitButton) {
    Shell shell("KVBStayOpen = YES;");
    ScriptedComponent::sHandlers["run"] = [](ScriptedComponent::Run& run) {
        run.setProgress("ppgt"_4cc, AEDesc::ofInt32(-1));
        return run.workUntilStopped();
    };
    QStringList seen;
    // a window becomes active a moment after it is shown
    when([] { return visibleButton(u"Run"_s) && visibleButton(u"Run"_s)->isActiveWindow(); },
         [&] {
             seen << u"startup"_s;
             QTest::keyClick(shell.controller->window(), Qt::Key_Return);
             when([] { return visibleButton(u"Stop"_s) != nullptr; },
                  [&] {
                      seen << u"progress"_s;
                      QTest::mouseClick(visibleButton(u"Stop"_s), Qt::LeftButton);
                      when([] { return visibleButton(u"Quit"_s) != nullptr; },
                           [&] {
                               seen << u"startup"_s;
                               EXPECT_TRUE(QApplication::activeModalWidget() == nullptr); // a stopped script is no error
                               QTest::mouseClick(visibleButton(u"Quit"_s), Qt::LeftButton);
                           });
                  });
         });
    shell.run();
    EXPECT_EQ(seen, (QStringList{u"startup"_s, u"progress"_s, u"startup"_s}));
}

TEST(Applet, ShowsAnErrorAsSheetOrAloneAndEnds) {
    for (const bool withPane : {true, false}) {
        SCOPED_TRACE(withPane);
        Shell shell(withPane ? "" : "KVBShowStartupScreen = NO;");
        ScriptedComponent::sHandlers["run"] = [](ScriptedComponent::Run&) { return ScriptedComponent::failing(-1728, u"<b>No</b>"); };
        bool wasSheet = false;
        if (withPane)
            when([] { return visibleButton(u"Run"_s) != nullptr; }, [] { visibleButton(u"Run"_s)->click(); });
        when([] { return visibleButton(u"QuitButton"_s) != nullptr; },
             [&] {
                 wasSheet = shell.controller->window()->attachedSheet() != nullptr;
                 QTest::mouseClick(visibleButton(u"QuitButton"_s), Qt::LeftButton);
             });
        shell.run();
        EXPECT_EQ(wasSheet, withPane);
    }
}

TEST(Applet, ClosingTheWindowStopsTheScriptAndEndsIt) {
    Shell shell("KVBShowStartupScreen = NO; KVBStayOpen = YES;");
    ScriptedComponent::sHandlers["run"] = [](ScriptedComponent::Run& run) {
        run.setProgress("ppgd"_4cc, AEDesc::ofText(u"Working"));
        return run.workUntilStopped();
    };
    when([&] { return shell.controller && shell.controller->isWindowVisible(); }, [&] { shell.controller->window()->close(); });
    shell.run();
    EXPECT_TRUE(shell.delegate->userStoppedScript());
}

TEST(Applet, AQuitHandlerThatRefusesBringsTheWindowBack) {
    Shell shell("KVBStayOpen = YES;", "run quit");
    std::atomic<int> asked = 0;
    ScriptedComponent::sHandlers["quit"] = [&](ScriptedComponent::Run& run) {
        if (++asked > 1)
            run.continueEvent(); // the second time the handler allows the quit
        return ScriptedComponent::Outcome();
    };
    shell.delegate->setScriptStarted(true);
    when([] { return visibleButton(u"Run"_s) != nullptr; },
         [&] {
             visibleButton(u"Quit"_s)->click();
             when([&] { return asked == 1 && visibleButton(u"Quit"_s); }, [] { visibleButton(u"Quit"_s)->click(); });
         });
    shell.run();
    EXPECT_EQ(asked, 2);
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/appkit/NSWindow.h"

#include "platform/appkit/NSAlert.h"
#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSTabViewController.h"
#include "platform/appkit/WindowFrame.h"
#include "platform/appkit/WindowLayout.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/foundation/QtPrinters.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

class Pane final : public NSViewController {
public:
    explicit Pane(QSize size) : mSize(size) {}
    int appearances = 0;
    QPushButton* button = nullptr;

protected:
    QWidget* loadView() override {
        auto* widget = new QWidget;
        widget->setMinimumSize(mSize);
        button = new QPushButton(widget);
        return widget;
    }
    void viewDidAppear() override { ++appearances; }

private:
    QSize mSize;
};

} // namespace

TEST(WindowFrame, ComesBackOnTheScreensThereAre) {
    const QRect one(0, 0, 1920, 1080);
    const QRect right(1920, 0, 1280, 1024);
    struct {
        const char* name;
        QRect frame;
        QList<QRect> screens;
        QRect expected;
    } const table[] = {
        {"fits", {100, 100, 480, 160}, {one}, {100, 100, 480, 160}},
        {"partly outside, still within reach", {1800, 1000, 480, 160}, {one}, {1800, 1000, 480, 160}},
        {"on the second screen", {2000, 10, 480, 160}, {one, right}, {2000, 10, 480, 160}},
        {"the second screen has gone", {2000, 10, 480, 160}, {one}, {1440, 10, 480, 160}},
        {"above the upper edge", {100, -150, 480, 160}, {one}, {100, 0, 480, 160}},
        {"below", {100, 1070, 480, 160}, {one}, {100, 920, 480, 160}},
        {"above the edge between two: the one that shows more of it", {1670, -150, 480, 160}, {one, right}, {1440, 0, 480, 160}},
        {"far away from both", {9000, 9000, 480, 160}, {one, right}, {2720, 864, 480, 160}},
        {"larger than the screen and gone", {5000, 0, 4000, 3000}, {one}, {0, 0, 1920, 1080}},
        {"no screen at all", {5, 5, 480, 160}, {}, {5, 5, 480, 160}},
    };
    for (const auto& row : table)
        EXPECT_EQ(WindowFrame::constrained(row.frame, row.screens), row.expected) << row.name;
    const QRect partlyBelow(100, 1000, 480, 160);
    EXPECT_EQ(WindowFrame::constrained(partlyBelow, {one}), partlyBelow);
    EXPECT_EQ(WindowFrame::whollyVisible(partlyBelow, {one}), QRect(100, 920, 480, 160));
    EXPECT_EQ(WindowFrame::whollyVisible({2000, 10, 480, 160}, {one, right}), QRect(2000, 10, 480, 160));
    EXPECT_EQ(WindowFrame::whollyVisible(partlyBelow, {}), partlyBelow);

    EXPECT_EQ(WindowFrame::fromString(WindowFrame::toString({-5, 7, 480, 160})), QRect(-5, 7, 480, 160));
    for (const char* bad : {"", "1 2 3", "1 2 3 x", "1 2 0 4", "1 2 99999 4", "1  2 3 4"})
        EXPECT_FALSE(WindowFrame::fromString(QString::fromLatin1(bad))) << bad;
}

TEST(NSWindow, RemembersItsFrameUnderItsName) {
    {
        NSWindow window;
        window.setFrameAutosaveName(u"memory"_s);
        window.resize(444, 333);
        window.move(123, 77);
        window.show();
        window.orderOut();
    }
    NSWindow again;
    again.setFrameAutosaveName(u"memory"_s);
    EXPECT_EQ(again.size(), QSize(444, 333));
    EXPECT_EQ(again.pos(), QPoint(123, 77));

    standardUserDefaults().setValue(WindowFrame::defaultsKey(u"memory"_s), u"30000 30000 444 333"_s);
    NSWindow elsewhere;
    elsewhere.setFrameAutosaveName(u"memory"_s);
    EXPECT_TRUE(QGuiApplication::primaryScreen()->availableGeometry().contains(QRect(elsewhere.pos(), elsewhere.size())));
}

TEST(NSWindow, AnnouncesOnlyAClosingUser) {
    NSWindow window;
    const int me = 0;
    int closings = 0;
    NSNotificationCenter::defaultCenter().addObserver(
        &me, [&](const NSNotification&) { ++closings; }, NSWindowWillCloseNotification, &window);
    window.show();
    window.orderOut();
    EXPECT_EQ(closings, 0);
    window.show();
    window.close();
    EXPECT_EQ(closings, 1);
    EXPECT_FALSE(window.isVisible());

    QDialog sheet;
    window.show();
    window.beginSheet(&sheet, {});
    window.close(); // the sheet must be answered first
    EXPECT_EQ(closings, 1);
    EXPECT_TRUE(window.isVisible());
    window.endSheet(&sheet, 0);
    NSNotificationCenter::defaultCenter().removeObserver(&me);
}

TEST(NSWindow, ShowsSheetsOneAfterTheOther) {
    NSWindow window;
    window.show();
    QDialog first;
    QDialog second;
    QDialog third;
    auto* vanishing = new QDialog;
    QStringList ends;
    auto note = [&ends](const QString& name) { return [&ends, name](int code) { ends << name + QString::number(code); }; };
    window.beginSheet(&first, note(u"1:"_s));
    window.beginSheet(&second, note(u"2:"_s));
    window.beginSheet(vanishing, note(u"v:"_s));
    window.beginSheet(&third, note(u"3:"_s));
    EXPECT_EQ(window.attachedSheet(), &first);
    EXPECT_FALSE(second.isVisible());
    EXPECT_EQ(first.windowModality(), Qt::WindowModal);
    window.endSheet(&third, 9); // the third sheet is still waiting
    first.accept();
    EXPECT_EQ(window.attachedSheet(), &second);
    EXPECT_TRUE(second.isVisible());
    EXPECT_FALSE(first.isVisible());
    second.reject();
    EXPECT_EQ(window.attachedSheet(), vanishing);
    delete vanishing;
    EXPECT_EQ(window.attachedSheet(), nullptr);
    EXPECT_EQ(ends, (QStringList{u"3:9"_s, u"1:1"_s, u"2:0"_s, u"v:-1001"_s}));

    // A completion may begin another sheet, and a window may be destroyed while a sheet is shown.
    {
        NSWindow brief;
        brief.show();
        brief.beginSheet(&first, [&](int) { brief.beginSheet(&second, note(u"late:"_s)); });
        first.accept();
        EXPECT_EQ(brief.attachedSheet(), &second);
    }
    EXPECT_EQ(ends.last(), u"late:-1001"_s);
}

TEST(NSWindow, StaysAsLongAsItsSheetWaitsForAnAnswer) {
    for (const bool shownAgain : {false, true}) {
        NSWindow window;
        QDialog first, second;
        window.show();
        window.beginSheet(&first, {});
        window.beginSheet(&second, {});
        window.orderOut();
        if (shownAgain)
            window.makeKeyAndOrderFront();
        window.endSheet(&first, 0);
        EXPECT_TRUE(window.isVisible() && second.isVisible());
        window.endSheet(&second, 0);
        EXPECT_EQ(window.isVisible(), shownAgain);
        window.orderOut();
        EXPECT_FALSE(window.isVisible());
    }
}

TEST(NSWindow, KeepsItsSheetInPlaceWhereverItGoes) {
    NSWindow window;
    Pane pane({300, 80});
    window.setContentViewController(&pane);
    window.show();
    QDialog sheet;
    sheet.setFixedSize(200, 60);
    window.beginSheet(&sheet, {}); // the window has not been placed yet
    const auto hangs = [&] {
        QTest::qWait(1);
        return QTest::qWaitFor([&] {
            const QPoint offset = sheet.frameGeometry().topLeft() - window.centralWidget()->mapToGlobal(QPoint());
            return offset == QPoint((window.width() - sheet.frameGeometry().width()) / 2, 0);
        });
    };
    for (const QPoint& place : {QPoint(120, 90), QPoint(300, 200)}) {
        window.move(place);
        EXPECT_TRUE(hangs());
    }
    window.resize(window.width() + 100, window.height());
    EXPECT_TRUE(hangs());
    const QRect screen = window.screen()->availableGeometry();
    window.move(screen.left(), screen.bottom() - 40); // the only button of the sheet must be within reach
    EXPECT_TRUE(QTest::qWaitFor([&] { return screen.contains(sheet.frameGeometry()); }));
    window.endSheet(&sheet, 0);
}

TEST(NSAlert, AnswersWithTheButtonPressed) {
    struct {
        const char* name;
        QStringList buttons;
        std::function<void(NSAlert&)> act;
        int code;
    } const table[] = {
        {"first", {u"Go"_s, u"Stay"_s}, [](NSAlert& a) { QTest::mouseClick(a.buttons()[0], Qt::LeftButton); }, 1000},
        {"second", {u"Go"_s, u"Stay"_s}, [](NSAlert& a) { QTest::mouseClick(a.buttons()[1], Qt::LeftButton); }, 1001},
        {"Return is the first", {u"Go"_s, u"Stay"_s}, [](NSAlert& a) { QTest::keyClick(&a.window(), Qt::Key_Return); }, 1000},
        {"Escape is Cancel", {u"Go"_s, u"Cancel"_s}, [](NSAlert& a) { QTest::keyClick(&a.window(), Qt::Key_Escape); }, 1001},
        {"Escape is the only one", {u"Quit"_s}, [](NSAlert& a) { QTest::keyClick(&a.window(), Qt::Key_Escape); }, 1000},
        {"the close button too", {u"Quit"_s}, [](NSAlert& a) { a.window().close(); }, 1000},
        {"Escape is nobody",
         {u"Go"_s, u"Stay"_s},
         [](NSAlert& a) {
             QTest::keyClick(&a.window(), Qt::Key_Escape);
             EXPECT_TRUE(a.window().isVisible());
             a.window().done(0); // ends the dialog as a timer would
         },
         0},
        {"without buttons", {}, [](NSAlert& a) { QTest::keyClick(&a.window(), Qt::Key_Return); }, 1000},
    };
    for (const auto& row : table) {
        for (const bool asSheet : {true, false}) {
            NSWindow window;
            window.show();
            NSAlert alert;
            alert.setAlertStyle(NSAlertStyle::critical);
            alert.setMessageText(u"<b>Message</b>"_s);
            alert.setInformativeText(u"More\n"_s.repeated(200));
            for (const QString& title : row.buttons)
                alert.addButton(title);
            int code = -1;
            if (asSheet) {
                alert.beginSheetModal(window, [&](int returnCode) { code = returnCode; });
                EXPECT_EQ(window.attachedSheet(), &alert.window());
                row.act(alert);
            } else {
                QTimer::singleShot(0, &alert.window(), [&] { row.act(alert); });
                code = alert.runModal();
            }
            EXPECT_EQ(code, row.code) << row.name << (asSheet ? " as sheet" : " modal");
            EXPECT_FALSE(alert.window().isVisible());
            EXPECT_LE(alert.window().height(), alert.window().screen()->availableGeometry().height()) << "long texts scroll";
        }
    }
}

TEST(NSTabViewController, FadesOnlyWhenItIsToAndCan) {
    NSTabViewController tabs;
    auto small = std::make_unique<Pane>(QSize(100, 50));
    auto large = std::make_unique<Pane>(QSize(300, 200));
    Pane* first = small.get();
    Pane* second = large.get();
    tabs.addTabViewController(std::move(small));
    tabs.addTabViewController(std::move(large));
    EXPECT_FALSE(second->isViewLoaded());
    using Options = NSTabViewController::TransitionOptions;
    {
        NSWindow window;
        window.setContentViewController(&tabs);
        tabs.setTransitionOptions(Options::crossfade);
        tabs.setSelectedTabViewItemIndex(0);
        tabs.reserveSpaceForTab(1);
        EXPECT_FALSE(tabs.isInTransition()); // without a visible view there is no fade
        EXPECT_EQ(first->appearances, 0);
        window.show();
        EXPECT_EQ(first->appearances, 1);
        const QSize before = window.size();

        tabs.setSelectedTabViewItemIndex(1);
        EXPECT_TRUE(tabs.isInTransition());
        EXPECT_TRUE(second->button->isVisible());
        second->button->setFocus(); // the new pane is live at once
        EXPECT_EQ(window.focusWidget(), second->button);
        EXPECT_EQ(window.size(), before);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !tabs.isInTransition(); }));

        tabs.setTransitionOptions(Options::none);
        tabs.setSelectedTabViewItemIndex(0);
        EXPECT_FALSE(tabs.isInTransition());
        EXPECT_EQ(first->appearances, 2);
        tabs.setSelectedTabViewItemIndex(0); // the tab is selected already, so it does not appear again
        tabs.setSelectedTabViewItemIndex(7);
        EXPECT_EQ(first->appearances, 2);
        EXPECT_EQ(tabs.selectedTabViewItemIndex(), 0);
    }
    EXPECT_TRUE(tabs.view()->parent() == nullptr) << "a view outlives the window that showed it";
}

TEST(WindowLayout, AWindowIsNoLargerThanItsScreen) {
    QWidget window;
    const QSize screen = window.screen()->availableGeometry().size();
    window.resize(screen * 2);
    fitToScreen(window);
    EXPECT_EQ(window.size(), roomOnScreen(window));
    EXPECT_LT(window.width(), screen.width()) << "the frame needs room, too";
    EXPECT_LT(window.height(), screen.height()) << "the title bar needs room, too";
    window.resize(200, 100);
    fitToScreen(window);
    EXPECT_EQ(window.size(), QSize(200, 100));
}

TEST(WindowLayout, ContentsThatAreLargerThanTheScreenHaveToDoWithLess) {
    for (const auto constraint : {QLayout::SetDefaultConstraint, QLayout::SetFixedSize}) {
        QWidget window;
        const QSize room = roomOnScreen(window);
        auto* layout = new QVBoxLayout(&window);
        layout->setSizeConstraint(constraint);
        auto* pane = new QWidget;
        pane->setMinimumSize(room.width() + 100, room.height() + 50);
        auto* small = new QWidget(pane);
        small->setMinimumSize(48, 48);
        layout->addWidget(pane);
        completeLayout(window);
        fitToScreen(window);
        window.show();
        EXPECT_EQ(window.size(), room) << constraint;
        EXPECT_EQ(small->minimumSize(), QSize(48, 48)) << "pictures are not to blame";
    }
    QWidget fitting;
    auto* layout = new QVBoxLayout(&fitting);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(new QLabel(u"fits"_s));
    completeLayout(fitting);
    fitToScreen(fitting);
    EXPECT_EQ(layout->sizeConstraint(), QLayout::SetFixedSize);
}

} // namespace quoddle

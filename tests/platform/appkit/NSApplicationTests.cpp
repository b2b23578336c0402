// SPDX-License-Identifier: MIT
#include "platform/appkit/NSApplication.h"

#include "platform/ae/AESendMessage.h"
#include "platform/appkit/MenuBar.h"
#include "platform/appkit/NSWindow.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/foundation/Plist.h"
#include "platform/foundation/QtPrinters.h"

#include <gtest/gtest.h>

#include <csignal>
#include <thread>

#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QTimer>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

using Reply = NSApplicationTerminateReply;

/// Records the calls that it gets, and does on launch what a test wants.
class RecordingDelegate final : public NSApplicationDelegate {
public:
    QStringList calls;
    QList<int> requests; // numbers of the requests to open files
    Reply terminateReply = Reply::now;
    bool quitsAfterLastWindow = true;
    std::function<void()> onLaunch;

    void applicationWillFinishLaunching() override { calls << u"will"_s; }
    void applicationDidFinishLaunching() override {
        calls << u"did"_s;
        if (onLaunch)
            onLaunch();
    }
    void applicationOpenFiles(const QStringList& filenames) override {
        calls << u"open "_s + filenames.join(u' ');
        if (filenames.contains(u"/refused"_s))
            NSApplication::sharedApplication()->replyToOpenOrPrint(NSApplicationDelegateReply::failure,
                                                                   NSApplication::sharedApplication()->openRequest());
        requests << NSApplication::sharedApplication()->openRequest();
    }
    Reply applicationShouldTerminate() override {
        calls << u"should"_s;
        return terminateReply;
    }
    void applicationWillTerminate() override { calls << u"end"_s; }
    bool applicationShouldTerminateAfterLastWindowClosed() override {
        calls << u"last"_s;
        return quitsAfterLastWindow;
    }
    bool respondsToAction(const QString& action) const override { return action == "greet:"_L1; }
    void performAction(const QString& action) override { calls << action; }
    bool validateMenuItem(const NSMenuItem& item) override { return item.title() != "Never"_L1; }
};

AEDesc openEvent(const std::vector<const char*>& paths) {
    std::vector<AEDesc> files;
    for (const char* path : paths)
        files.push_back(AEDesc::ofFilePath(path));
    AEDesc event = AEDesc::appleEvent("aevt"_4cc, "odoc"_4cc);
    event.put("----"_4cc, AEDesc::list(files));
    return event;
}

class NSApplicationTest : public testing::Test {
protected:
    void SetUp() override { application().setDelegate(&delegate); }
    void TearDown() override {
        application().setDelegate(nullptr);
        MainThread::open(); // the end of a run closes it
    }
    static NSApplication& application() { return *NSApplication::sharedApplication(); }
    /// Runs the application until it ends. Fails when it does not end within two seconds.
    void run(const QStringList& files = {}) {
        QTimer guard;
        guard.setSingleShot(true);
        QObject::connect(&guard, &QTimer::timeout, &guard, [] {
            ADD_FAILURE() << "did not end";
            QCoreApplication::exit(1);
        });
        guard.start(2000);
        application().run(files);
    }
    RecordingDelegate delegate;
};

} // namespace

TEST_F(NSApplicationTest, LaunchesInOrderAndEnds) {
    delegate.onLaunch = [this] { application().terminate(); };
    run({u"/a"_s, u"/b"_s});
    EXPECT_EQ(delegate.calls, (QStringList{u"will"_s, u"open /a /b"_s, u"did"_s, u"should"_s, u"end"_s}));
    EXPECT_FALSE(application().isRunning());
}

TEST_F(NSApplicationTest, AsksBeforeItEnds) {
    using Calls = QStringList;
    struct {
        const char* name;
        Reply reply;
        std::function<void(NSApplication&)> afterwards;
        Calls calls;
    } const table[] = {
        {"later, then yes", Reply::later, [](NSApplication& a) { a.replyToApplicationShouldTerminate(true); }, {u"should"_s, u"end"_s}},
        {"later, then no, then yes without a question",
         Reply::later,
         [](NSApplication& a) {
             a.replyToApplicationShouldTerminate(false);
             a.replyToApplicationShouldTerminate(true);
         },
         {u"should"_s, u"end"_s}},
        {"later, asked again",
         Reply::later,
         [this](NSApplication& a) {
             delegate.terminateReply = Reply::now;
             a.terminate();
         },
         {u"should"_s, u"should"_s, u"end"_s}},
        {"no, then yes",
         Reply::cancel,
         [this](NSApplication& a) {
             delegate.terminateReply = Reply::now;
             a.terminate();
             a.terminate(); // the end has begun, so the delegate is not asked any more
         },
         {u"should"_s, u"should"_s, u"end"_s}},
    };
    for (const auto& row : table) {
        delegate.calls.clear();
        delegate.terminateReply = row.reply;
        delegate.onLaunch = [&] {
            delegate.calls.clear();
            application().terminate();
            QTimer::singleShot(10, &application(), [&] { row.afterwards(application()); });
        };
        run();
        EXPECT_EQ(delegate.calls, row.calls) << row.name;
    }
}

TEST_F(NSApplicationTest, SignalsAndQuitEventsAreQuitRequests) {
    for (const int signal : {SIGTERM, SIGINT, 0}) {
        delegate.calls.clear();
        delegate.terminateReply = Reply::cancel;
        delegate.onLaunch = [&] {
            delegate.calls.clear();
            auto ask = [signal] { signal ? static_cast<void>(raise(signal)) : QCoreApplication::quit(); };
            ask();
            QTimer::singleShot(20, &application(), [this, ask] {
                delegate.terminateReply = Reply::now;
                ask();
            });
        };
        run();
        EXPECT_EQ(delegate.calls, (QStringList{u"should"_s, u"should"_s, u"end"_s})) << signal;
    }
}

TEST_F(NSApplicationTest, AnswersOpenRequestsInOrder) {
    QStringList answers;
    auto note = [&answers](const QString& name) {
        return [&answers, name](NSApplicationDelegateReply reply) { answers << name + QString::number(static_cast<int>(reply)); };
    };
    application().openFiles({u"/1"_s}, note(u"first "_s));
    application().openFiles({u"/2"_s}, note(u"second "_s));
    application().openFiles({u"/3"_s}, note(u"third "_s));
    EXPECT_EQ(application().openRequest(), 0);
    application().replyToOpenOrPrint(NSApplicationDelegateReply::cancel, delegate.requests.last());
    application().replyToOpenOrPrint(NSApplicationDelegateReply::failure, 0);
    application().replyToOpenOrPrint(NSApplicationDelegateReply::success, 0);
    application().replyToOpenOrPrint(NSApplicationDelegateReply::success, 0); // no request is open
    EXPECT_EQ(answers, (QStringList{u"third 1"_s, u"first 2"_s, u"second 0"_s}));
}

TEST_F(NSApplicationTest, FilesThatAreRefusedAtOnceDoNotAnswerForOthers) {
    QStringList answers;
    auto note = [&answers](const QString& name) {
        return [&answers, name](NSApplicationDelegateReply reply) { answers << name + QString::number(static_cast<int>(reply)); };
    };
    application().openFiles({u"/1"_s}, note(u"first "_s));
    application().openFiles({u"/refused"_s}, note(u"second "_s));
    EXPECT_EQ(answers, (QStringList{u"second 2"_s}));
    application().replyToOpenOrPrint(NSApplicationDelegateReply::success, 0);
    EXPECT_EQ(answers, (QStringList{u"second 2"_s, u"first 0"_s}));
}

TEST_F(NSApplicationTest, AppleEventsReachTheDelegate) {
    struct {
        const char* name;
        AEDesc event;
        QStringList calls;
        OSErr answer; ///< the status of the call, or the error in the reply
    } const table[] = {
        {"run", AEDesc::appleEvent("aevt"_4cc, "oapp"_4cc), {}, noErr},
        {"reopen", AEDesc::appleEvent("aevt"_4cc, "rapp"_4cc), {}, noErr},
        {"open nothing", AEDesc::appleEvent("aevt"_4cc, "odoc"_4cc), {}, errAEParamMissed},
        {"open two", openEvent({"/a b", "/c"}), {u"open /a b /c"_s}, userCanceledErr},
        {"quit, refused", AEDesc::appleEvent("aevt"_4cc, "quit"_4cc), {u"should"_s}, userCanceledErr},
    };
    delegate.terminateReply = Reply::cancel;
    delegate.onLaunch = [&] {
        for (const auto& row : table) {
            SCOPED_TRACE(row.name);
            delegate.calls.clear();
            std::atomic<int> status = 1;
            AEDesc reply;
            std::thread sender([&] { status = AESendMessage(row.event, &reply, kAEWaitReply, 600); });
            EXPECT_TRUE(QTest::qWaitFor([&] { return status != 1 || !delegate.calls.isEmpty(); }));
            application().replyToOpenOrPrint(NSApplicationDelegateReply::cancel, 0);
            EXPECT_TRUE(QTest::qWaitFor([&] { return status != 1; }));
            sender.join();
            EXPECT_EQ(delegate.calls, row.calls);
            const AEDesc* error = reply.find("errn"_4cc);
            EXPECT_EQ(error ? *error->asInt32() : 0, row.answer);
        }
        delegate.terminateReply = Reply::now;
        AESendMessage(AEDesc::appleEvent("aevt"_4cc, "quit"_4cc), nullptr, kAENoReply, 60);
    };
    run();
    EXPECT_FALSE(application().isRunning());
}

TEST_F(NSApplicationTest, TheLastWindowClosedByTheUserEndsIt) {
    NSWindow first;
    NSWindow second;
    delegate.onLaunch = [&] {
        delegate.calls.clear();
        first.show();
        second.show();
        second.orderOut(); // the program hides the window, so the delegate is not asked
        second.show();
        first.close(); // another window is still open
        QTimer::singleShot(20, &second, [&] {
            EXPECT_TRUE(delegate.calls.isEmpty());
            second.close();
        });
    };
    run();
    EXPECT_EQ(delegate.calls, (QStringList{u"last"_s, u"should"_s, u"end"_s}));
}

TEST_F(NSApplicationTest, AnEndDecidedWhileTheWindowClosesIsNotAskedForAgain) {
    NSWindow window;
    delegate.terminateReply = Reply::cancel;
    const int observer = 0;
    NSNotificationCenter::defaultCenter().addObserver(
        &observer, [this](const NSNotification&) { application().terminate(); }, NSWindowWillCloseNotification, &window);
    delegate.onLaunch = [&] {
        delegate.calls.clear();
        window.show();
        window.close();
        QTimer::singleShot(20, &application(), [this] {
            EXPECT_EQ(delegate.calls, (QStringList{u"should"_s}));
            delegate.terminateReply = Reply::now;
            application().terminate();
        });
    };
    run();
    NSNotificationCenter::defaultCenter().removeObserver(&observer);
}

TEST_F(NSApplicationTest, ModalSessionsNestAndEndInnerFirst) {
    QDialog outer;
    QDialog inner;
    int innerCode = 0;
    delegate.onLaunch = [&] {
        QTimer::singleShot(0, &outer, [&] {
            QTimer::singleShot(0, &inner, [&] {
                outer.done(5); // the outer session ends after the inner one
                QTimer::singleShot(10, &inner, [&] { inner.done(7); });
            });
            innerCode = application().runModalForWindow(inner);
        });
        EXPECT_EQ(application().runModalForWindow(outer), 5);
        EXPECT_EQ(innerCode, 7);
        EXPECT_FALSE(inner.isVisible());

        QTimer::singleShot(0, &application(), [this] { application().terminate(); }); // the end of the application breaks the session off
        EXPECT_EQ(application().runModalForWindow(outer), NSModalResponseAbort);
    };
    run();
}

TEST_F(NSApplicationTest, MenusActAndAreJudged) {
    const auto list =
        Plist::read("({title=Demo; submenu=({title=Greet; action=\"greet:\"; key=\"Ctrl+G\";}, {title=Never; action=\"greet:\";}, "
                    "\"-\", {title=Gone; action=\"update:\"; id=updateItem;}, \"-\", {title=\"Paste\"; action=\"paste:\";}, "
                    "{title=\"A & B\"; submenu=();})})");
    ASSERT_TRUE(list);
    auto made = NSMenu::menuFromPropertyList(*list);
    ASSERT_TRUE(made) << made.error().toStdString();
    const std::shared_ptr<NSMenu> menu = *made;

    NSWindow window;
    auto* edit = new QLineEdit(&window);
    window.setCentralWidget(edit);
    auto* bar = new MenuBar(menu, window);
    bar->hide();
    window.show();
    window.activateWindow();
    edit->setFocus();
    QCoreApplication::processEvents();

    QTest::keyClick(&window, Qt::Key_G, Qt::ControlModifier); // shortcuts work although the bar is hidden
    EXPECT_EQ(delegate.calls, (QStringList{u"greet:"_s}));

    NSMenuItem* gone = menu->itemWithIdentifier(u"updateItem"_s);
    ASSERT_TRUE(gone);
    gone->menu()->removeItem(gone);
    menu->itemArray()[0]->submenu()->itemArray()[0]->setTitle(u"Salute"_s);
    QCoreApplication::processEvents();
    auto* shown = bar->actions().at(0)->menu();
    QStringList titles;
    Q_EMIT shown->aboutToShow();
    for (QAction* action : shown->actions())
        titles << (action->isSeparator() ? u"-"_s : action->text() + (action->isEnabled() ? u""_s : u" (off)"_s));
    EXPECT_EQ(titles, (QStringList{u"Salute"_s, u"Never (off)"_s, u"-"_s, u"Paste"_s, u"A && B"_s})) << titles.join(u'|').toStdString();

    // A long name is cut in the bar, so that the other menus keep their room, and shown in full in the menu.
    const QString longName = u"A & "_s + QString(40, u'B');
    menu->itemArray()[0]->setTitle(longName);
    menu->itemArray()[0]->submenu()->itemArray()[0]->setTitle(u"About "_s + longName);
    menu->itemArray()[0]->submenu()->itemArray()[1]->setTitle(QString(5000, u'C'));
    QCoreApplication::processEvents();
    const QAction* first = bar->actions().at(0);
    EXPECT_TRUE(first->text().startsWith(u"A && "_s) && first->text().contains(u'…'));
    EXPECT_LT(bar->actionGeometry(bar->actions().at(0)).width(), 200);
    EXPECT_EQ(first->menu()->actions().at(0)->text(), u"About A && "_s + QString(40, u'B'));
    EXPECT_LT(first->menu()->sizeHint().width(), window.screen()->availableGeometry().width());

    for (const char* bad : {"word", "({submenu=();})", "(())", "({title=x; submenu=word;})"})
        EXPECT_FALSE(NSMenu::menuFromPropertyList(*Plist::read(bad))) << bad;
}

} // namespace quoddle

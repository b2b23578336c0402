// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "dialogs/CommandHandlers.h"
#include "platform/base/Wait.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/foundation/QtPrinters.h"
#include "platform/panels/AnswerField.h"
#include "platform/panels/DialogQueue.h"
#include "platform/panels/StandardCommands.h"

#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

namespace quoddle {

using namespace Qt::StringLiterals;
using namespace test;

namespace {

/// The reply of "display dialog"; its record has its items in this order.
AEDesc dialogReply(const char* button, const char* answer, bool gaveUp) {
    return AEDesc::record({{"bhit"_4cc, text(button)}, {"ttxt"_4cc, text(answer)}, {"gavu"_4cc, AEDesc::ofBoolean(gaveUp)}});
}

AEDesc cancelled(const AEDesc& reply) {
    AEDesc fields = AEDesc::record();
    for (const AEItem& item : reply.fields())
        (void)fields.put(item.key, item.value);
    return fields;
}

const AEDesc kCancelled = AEDesc::record({{"errn"_4cc, AEDesc::ofInt32(-128)}});

QString keysOf(const QDialog& dialog) {
    QString keys;
    for (const auto* button : dialog.findChildren<QPushButton*>())
        if (button->isVisible() && !keyEquivalent(*button).isEmpty())
            keys += button->accessibleName() + (keyEquivalent(*button) == kReturnKeyEquivalent ? u"=Return "_s : u"=Escape "_s);
    return keys.trimmed();
}

} // namespace

TEST(DisplayDialog, WrongParametersAreAnsweredWithoutADialog) {
    DialogShell shell;
    const AEDesc three = texts({"Yes", "No", "Maybe"});
    const AEDesc noNumber = texts({"a", "b"});
    const struct {
        const char* what;
        std::vector<AEItem> parameters;
        OSStatus number;
        const char* message;
    } kCases[] = {
        {"giving up after no number", {{"givu"_4cc, noNumber}, {"btns"_4cc, texts({"1", "2", "3", "4"})}}, -1700, ""},
        {"four buttons, before the default one",
         {{"btns"_4cc, texts({"1", "2", "3", "4"})}, {"dflt"_4cc, AEDesc::ofInt32(9)}},
         -50,
         "Maximum of 3 buttons allowed."},
        {"default button 0", {{"btns"_4cc, three}, {"dflt"_4cc, AEDesc::ofInt32(0)}}, -50, "Specified default button does not exist."},
        {"default button 4", {{"btns"_4cc, three}, {"dflt"_4cc, AEDesc::ofInt32(4)}}, -50, "Specified default button does not exist."},
        {"default button in another case",
         {{"btns"_4cc, three}, {"dflt"_4cc, text("yes")}},
         -50,
         "Specified default button does not exist."},
        {"default button among buttons that were not given", {{"dflt"_4cc, text("OK")}}, -50, "Specified default button does not exist."},
        {"cancel button by a name that there is not",
         {{"btns"_4cc, three}, {"cbtn"_4cc, text("Cancel")}, {"disp"_4cc, AEDesc::ofInt32(7)}},
         -50,
         "Specified cancel button does not exist."},
        {"icon 3", {{"disp"_4cc, AEDesc::ofInt32(3)}}, -50, "No such icon."},
        {"icon -1", {{"disp"_4cc, AEDesc::ofInt32(-1)}}, -50, "No such icon."},
        {"icon file that is not there", {{"disp"_4cc, AEDesc::ofFilePath("/no/such.png")}}, -192, "A resource wasn't found."},
        {"icon name that is not there", {{"disp"_4cc, text("nothing")}}, -192, "A resource wasn't found."},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.what);
        const Conversation conversation(displayDialog(row.parameters), press(u"OK"_s));
        EXPECT_FALSE(conversation.dialogWasSeen());
        EXPECT_EQ(conversation.errorNumber(), row.number);
        EXPECT_EQ(conversation.field("errs"_4cc).asUTF8().value_or(""), row.message);
        EXPECT_TRUE(conversation.result().isNull());
        if (row.number == -1700) {
            EXPECT_EQ(conversation.field("erob"_4cc), noNumber);
            EXPECT_EQ(conversation.field("errt"_4cc), AEDesc::ofType("magn"_4cc));
        }
    }
}

TEST(DisplayDialog, ButtonsKeysAndAnswers) {
    DialogShell shell;
    const AEDesc three = texts({"Yes", "No", "Maybe"});
    const struct {
        const char* what;
        std::vector<AEItem> parameters;
        const char* keys;
        Answer answer;
        AEDesc reply; // the record, or the whole reply when there is no record
    } kCases[] = {
        {"no buttons, Return", {}, "Cancel=Escape OK=Return", key(Qt::Key_Return), dialogReply("OK", "", false)},
        {"no buttons, Escape", {}, "Cancel=Escape OK=Return", key(Qt::Key_Escape), kCancelled},
        {"an empty list is no buttons", {{"btns"_4cc, AEDesc::list()}}, "Cancel=Escape OK=Return", press(u"Cancel"_s), kCancelled},
        {"one button", {{"btns"_4cc, texts({"Fine"})}}, "", press(u"Fine"_s), dialogReply("Fine", "", false)},
        {"one button that is no list", {{"btns"_4cc, text("Fine")}}, "", press(u"Fine"_s), dialogReply("Fine", "", false)},
        {"the left one", {{"btns"_4cc, three}}, "", press(u"Yes"_s), dialogReply("Yes", "", false)},
        {"the middle one", {{"btns"_4cc, three}}, "", press(u"No"_s), dialogReply("No", "", false)},
        {"the right one by number",
         {{"btns"_4cc, three}, {"dflt"_4cc, AEDesc::ofInt32(3)}},
         "Maybe=Return",
         key(Qt::Key_Enter),
         dialogReply("Maybe", "", false)},
        {"one called Cancel cancels", {{"btns"_4cc, texts({"Cancel", "Go"})}}, "Cancel=Escape", key(Qt::Key_Escape), kCancelled},
        {"another one named as cancel button",
         {{"btns"_4cc, texts({"Cancel", "Go"})}, {"cbtn"_4cc, text("Go")}},
         "Go=Escape",
         press(u"Cancel"_s),
         dialogReply("Cancel", "", false)},
        {"default and cancel: Return cancels",
         {{"btns"_4cc, three}, {"dflt"_4cc, text("No")}, {"cbtn"_4cc, AEDesc::ofInt32(2)}},
         "No=Return",
         key(Qt::Key_Return),
         kCancelled},
        {"two of the same title are the same",
         {{"btns"_4cc, texts({"A", "A"})}, {"cbtn"_4cc, AEDesc::ofInt32(1)}},
         "A=Escape A=Escape",
         key(Qt::Key_Escape),
         kCancelled},
        {"an empty answer", {{"dtxt"_4cc, text("")}}, "Cancel=Escape OK=Return", key(Qt::Key_Return), dialogReply("OK", "", false)},
        {"an answer typed over the given one",
         {{"dtxt"_4cc, text("old")}},
         "Cancel=Escape OK=Return",
         [](QDialog& dialog) {
             QTest::keyClicks(dialog.focusWidget(), u"new & better"_s);
             QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
         },
         dialogReply("OK", "new & better", false)},
        {"a hidden answer",
         {{"dtxt"_4cc, text("secret")}, {"htxt"_4cc, AEDesc::ofBoolean(true)}},
         "Cancel=Escape OK=Return",
         [](QDialog& dialog) {
             EXPECT_EQ(dialog.findChild<QLineEdit*>(u"secureAnswerField"_s)->echoMode(), QLineEdit::Password);
             QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
         },
         dialogReply("OK", "secret", false)},
        {"line breaks are kept as they are",
         {{"dtxt"_4cc, text("a\rb\tc")}},
         "Cancel=Escape OK=Return",
         press(u"OK"_s),
         dialogReply("OK", "a\rb\tc", false)},
        {"Return and Tab go into an answer of several lines",
         {{"dtxt"_4cc, text("a\nb")}},
         "Cancel=Escape OK=Return",
         [](QDialog& dialog) {
             QTest::keyClick(dialog.focusWidget(), Qt::Key_End, Qt::ControlModifier);
             QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
             QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
             QTest::keyClicks(dialog.focusWidget(), u"c"_s);
             press(u"OK"_s)(dialog);
         },
         dialogReply("OK", "a\nb\n\tc", false)},
        {"giving up after 0 is never",
         {{"givu"_4cc, AEDesc::ofInt32(0)}},
         "Cancel=Escape OK=Return",
         press(u"OK"_s),
         dialogReply("OK", "", false)},
        {"gave up",
         {{"givu"_4cc, AEDesc::ofDouble(1)}, {"dtxt"_4cc, text("so far")}},
         "Cancel=Escape OK=Return",
         {},
         dialogReply("", "so far", true)},
    };
    for (const bool asSheet : {true, false}) {
        shell.controller->window()->setVisible(asSheet);
        for (const auto& row : kCases) {
            SCOPED_TRACE(std::string(row.what) + (asSheet ? ", sheet" : ", modal"));
            const Conversation conversation(displayDialog(row.parameters), [&](QDialog& dialog) {
                EXPECT_EQ(keysOf(dialog), QString::fromUtf8(row.keys));
                EXPECT_EQ(dialog.parentWidget(), asSheet ? shell.controller->window() : nullptr);
                if (row.answer)
                    row.answer(dialog);
            });
            EXPECT_TRUE(conversation.dialogWasSeen());
            EXPECT_TRUE(conversation.wasDisplayingPanel());
            EXPECT_EQ(row.reply.find("errn"_4cc) ? cancelled(conversation.reply()) : conversation.result(), row.reply);
        }
    }
}

TEST(DisplayDialog, ReturnPressesNothingWithoutADefaultButtonUntilTheUserHasGoneToOne) {
    DialogShell shell;
    const Conversation conversation(displayDialog({{"btns"_4cc, texts({"Delete", "Keep"})}}), [](QDialog& dialog) {
        QTest::keyClick(dialog.focusWidget() ? dialog.focusWidget() : &dialog, Qt::Key_Return);
        ASSERT_TRUE(dialog.isVisible());
        QTest::keyClick(&dialog, Qt::Key_Tab);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(conversation.result().find("bhit"_4cc)->asUTF8(), "Keep");
}

TEST(DisplayDialog, AKeyThatIsHeldDownFromAnEarlierDialogPressesNothing) {
    DialogShell shell;
    for (const int held : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Escape}) {
        const Conversation conversation(displayDialog({}), [held](QDialog& dialog) {
            const auto send = [&dialog, held](QEvent::Type type, quint64 timestamp, bool isMarked) {
                QKeyEvent event(type, held, Qt::NoModifier, QString(), isMarked);
                event.setTimestamp(timestamp);
                QCoreApplication::sendEvent(dialog.focusWidget() ? dialog.focusWidget() : &dialog, &event);
            };
            // A release and a press come at the same moment. The toolkit marks such a pair as a repetition or not.
            for (quint64 moment = 1000; moment < 1100; moment += 10) {
                send(QEvent::KeyRelease, moment, moment < 1050);
                send(QEvent::KeyPress, moment, moment < 1050);
                ASSERT_TRUE(dialog.isVisible()) << held << " at " << moment;
            }
            send(QEvent::KeyRelease, 1100, false);
            ASSERT_TRUE(dialog.isVisible()) << held;
            send(QEvent::KeyPress, 2000, false);
            send(QEvent::KeyRelease, 2100, false);
            EXPECT_FALSE(dialog.isVisible()) << held;
        });
        EXPECT_EQ(conversation.errorNumber(), held == Qt::Key_Escape ? -128 : 0);
    }
}

TEST(DisplayDialog, AnAnswerBeginsWhereItsWritingDoes) {
    DialogShell shell;
    const Conversation conversation(displayDialog({{"dtxt"_4cc, text("\u05e9\u05dc\u05d5\u05dd")}}), [](QDialog& dialog) {
        auto* field = dialog.findChild<AnswerField*>(u"answerField"_s);
        const auto isAtTheRight = [field] { return field->cursorRect().center().x() > field->viewport()->width() / 2; };
        EXPECT_TRUE(isAtTheRight());
        QTest::keyClicks(field, u"x"_s);
        EXPECT_FALSE(isAtTheRight());
        press(u"OK"_s)(dialog);
    });
    EXPECT_EQ(conversation.result().find("ttxt"_4cc)->asUTF8(), "x");
}

TEST(DisplayDialog, AnAnswerStandsInTheMiddleOfItsField) {
    DialogShell shell;
    const Conversation conversation(displayDialog({{"dtxt"_4cc, text("nobody")}}), [](QDialog& dialog) {
        auto* field = dialog.findChild<AnswerField*>(u"answerField"_s);
        const int middle = field->viewport()->mapTo(field, field->cursorRect().center()).y();
        EXPECT_NEAR(middle, field->rect().center().y(), 1);
        press(u"OK"_s)(dialog);
    });
    EXPECT_TRUE(conversation.dialogWasSeen());
}

TEST(DisplayDialog, ItsTextIsCopiedAndPagedThroughByKeys) {
    DialogShell shell;
    const QByteArray longText = QByteArray("many words ").repeated(2000);
    const Conversation conversation(command("syso"_4cc, "dlog"_4cc, {{"----"_4cc, text(longText)}}), [&longText](QDialog& dialog) {
        QTest::keyClick(dialog.focusWidget(), Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8(longText));
        const QScrollBar& bar = *dialog.findChild<QScrollArea*>(u"promptScrollArea"_s)->verticalScrollBar();
        EXPECT_TRUE(QTest::qWaitFor([&bar] { return bar.isVisible(); }));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_PageDown);
        EXPECT_GT(bar.value(), 0);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_PageUp);
        EXPECT_EQ(bar.value(), 0);
        press(u"OK"_s)(dialog);
    });
    EXPECT_TRUE(conversation.dialogWasSeen());
}

TEST(DisplayDialog, TitlesOfAWindowOfItsOwnStandOnOneLine) {
    DialogShell shell(false);
    const Conversation conversation(displayDialog({{"appr"_4cc, text("one\ntwo\tthree & four")}, {"btns"_4cc, texts({"a\nb"})}}),
                                    [](QDialog& dialog) {
                                        EXPECT_EQ(dialog.windowTitle(), u"one two three & four"_s);
                                        press(u"a b"_s)(dialog);
                                    });
    EXPECT_EQ(conversation.result().find("bhit"_4cc)->asUTF8(), "a\nb");
}

TEST(DisplayDialog, Icons) {
    DialogShell shell;
    shell.addResource(u"picture.png"_s, "no picture, but it is there");
    QTemporaryDir folder;
    QImage picture(20, 10, QImage::Format_RGB32);
    picture.fill(Qt::green);
    const QString path = folder.filePath(u"green.png"_s);
    ASSERT_TRUE(picture.save(path));
    const struct {
        const char* what;
        AEDesc icon;
        bool isShown;
    } kCases[] = {
        {"stop", AEDesc::ofEnum(0), true},
        {"note", AEDesc::ofInt32(1), true},
        {"caution", AEDesc::ofEnum(2), true},
        {"a file", AEDesc::ofFilePath(path.toStdString()), true},
        {"a file without a picture", AEDesc::ofFilePath("/etc/hostname"), false},
        {"a resource is looked for but not shown", text("picture"), false},
        {"anything else", AEDesc::ofBoolean(true), false},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.what);
        const Conversation conversation(displayDialog({{"disp"_4cc, row.icon}}), [&row](QDialog& dialog) {
            const auto* view = dialog.findChild<QLabel*>(u"iconImageView"_s);
            EXPECT_EQ(view != nullptr, row.isShown);
            if (view) {
                EXPECT_EQ(view->pixmap().deviceIndependentSize().width(), 64);
            }
            press(u"OK"_s)(dialog);
        });
        EXPECT_TRUE(conversation.dialogWasSeen());
    }
}

TEST(DisplayDialog, FitsTheScreenWhateverItSays) {
    DialogShell shell;
    const int widest = QGuiApplication::primaryScreen()->availableGeometry().width() - 10;
    const QByteArray longWord(5000, 'w'), longText = QByteArray("many words ").repeated(20000);
    const std::string longTitle(400, 'b');
    const AEDesc longTitles = texts({longTitle.c_str(), longTitle.c_str(), "OK"});
    for (const AEDesc& event :
         {command("syso"_4cc, "dlog"_4cc, {{"----"_4cc, text(longWord)}}), command("syso"_4cc, "dlog"_4cc, {{"----"_4cc, text(longText)}}),
          displayDialog({{"btns"_4cc, longTitles}})}) {
        const Conversation conversation(event, [widest](QDialog& dialog) {
            EXPECT_LE(dialog.width(), widest);
            EXPECT_LE(dialog.height(), dialog.screen()->availableGeometry().height());
            for (const auto* button : dialog.findChildren<QPushButton*>()) // a shortened title ends with an ellipsis
                EXPECT_LE(button->sizeHint().width(), button->width());
            EXPECT_TRUE(dialog.rect().contains(buttonNamed(dialog, u"OK"_s)->geometry()));
            press(u"OK"_s)(dialog);
        });
        EXPECT_TRUE(conversation.dialogWasSeen());
    }
}

TEST(DisplayDialog, IsWidenedForALongWordUpToTheScreen) {
    DialogShell shell;
    const AEDesc word = text(QByteArray(50, 'w')), endless = text(QByteArray(500, 'w'));
    const struct {
        const char* what;
        std::vector<AEItem> parameters;
        bool scrolls;
    } kCases[] = {
        {"a word", {{"----"_4cc, word}}, false},
        {"with an icon", {{"----"_4cc, word}, {"disp"_4cc, AEDesc::ofInt32(2)}}, false},
        {"with an answer", {{"----"_4cc, word}, {"dtxt"_4cc, text("")}}, false},
        {"among others", {{"----"_4cc, text("a few " + QByteArray(50, 'w') + " words")}}, false},
        {"no end", {{"----"_4cc, endless}}, true},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.what);
        const Conversation conversation(command("syso"_4cc, "dlog"_4cc, row.parameters), [&row](QDialog& dialog) {
            auto* area = dialog.findChild<QScrollArea*>(u"promptScrollArea"_s);
            EXPECT_EQ(area->widget()->minimumSizeHint().width() > area->width(), row.scrolls);
            press(u"OK"_s)(dialog);
        });
        EXPECT_TRUE(conversation.dialogWasSeen());
    }
}

TEST(DialogSession, OneDialogAtATimeInTheOrderInWhichTheyCame) {
    for (const bool asSheet : {true, false}) {
        DialogShell shell(asSheet);
        std::vector<std::string> shown;
        std::atomic<int> answered = 0;
        std::vector<std::thread> senders;
        QTimer user;
        QDialog* previous = nullptr;
        QObject::connect(&user, &QTimer::timeout, &user, [&] {
            QDialog* dialog = visibleDialog();
            const auto windows = QApplication::topLevelWidgets();
            EXPECT_LE(std::count_if(windows.begin(), windows.end(),
                                    [](QWidget* widget) { return qobject_cast<QDialog*>(widget) && widget->isVisible(); }),
                      1);
            EXPECT_EQ(AppDelegate::instance()->isDisplayingPanel(), dialog != nullptr);
            if (!dialog || senders.size() < 3 || std::exchange(previous, dialog) == dialog)
                return;
            auto* button = dialog->findChild<QPushButton*>(u"rightButton"_s);
            shown.push_back(button->accessibleName().toStdString());
            button->click();
        });
        user.start(5);
        for (const char* title : {"first", "second", "third"}) {
            const auto hasSent = std::make_shared<std::atomic<bool>>(false);
            senders.emplace_back([&answered, hasSent, title] {
                AEDesc reply;
                const auto isAsked = [hasSent] { // called when the event is under way
                    *hasSent = true;
                    return false;
                };
                (void)AESendMessage(displayDialog({{"btns"_4cc, texts({title})}}), &reply, kAEWaitReply, 20 * 60, {isAsked});
                EXPECT_EQ(reply.find("----"_4cc)->find("bhit"_4cc)->asUTF8(), title);
                ++answered;
            });
            while (!*hasSent) // the next sender starts later, so that the events come in this order
                std::this_thread::yield();
        }
        EXPECT_TRUE(QTest::qWaitFor([&answered] { return answered == 3; }, 10'000));
        for (auto& sender : senders)
            sender.join();
        EXPECT_EQ(shown, (std::vector<std::string>{"first", "second", "third"}));
    }
}

TEST(DialogSession, GoesAwayWithItsSender) {
    for (const bool asSheet : {true, false}) {
        DialogShell shell(asSheet);
        std::atomic<bool> givesUp = false;
        const Conversation conversation(
            displayDialog({}),
            [&givesUp](QDialog&) {
                givesUp = true;
                wakeWaits();
            },
            [&givesUp] { return givesUp.load(); });
        // The dialog may notice the cancellation before the sender, which then gets its answer.
        EXPECT_EQ(conversation.status() == noErr ? conversation.errorNumber() : conversation.status(), userCanceledErr);
        EXPECT_TRUE(QTest::qWaitFor([] { return !visibleDialog() && !AppDelegate::instance()->isDisplayingPanel(); }));
    }
}

namespace {

/// Senders that each ask in a thread of their own. Their dialogs are asked for in the order of the calls.
class Senders {
public:
    ~Senders() {
        for (auto& thread : mThreads)
            thread.join();
    }
    void ask(const std::function<bool()>& givesUp = [] { return false; }) {
        const std::size_t number = mThreads.size();
        mHasSent[number] = false;
        mThreads.emplace_back([this, number, givesUp] {
            AEDesc reply;
            const auto isCancelled = [this, number, givesUp] { // also called for the receiver, when this thread may have ended
                mHasSent[number] = true;
                return givesUp();
            };
            const OSStatus status = AESendMessage(displayDialog({}), &reply, kAEWaitReply, 20 * 60, {isCancelled});
            const AEDesc* error = reply.find("errn"_4cc);
            mAnswers[number] = status != noErr ? status : error ? error->asInt32().value_or(0) : noErr;
            mIsAnswered[number] = true;
        });
        EXPECT_TRUE(QTest::qWaitFor([&] { return mHasSent[number].load(); }));
        QCoreApplication::processEvents();
    }
    /// The answer of a sender, counted from 0.
    OSStatus answer(std::size_t number) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return mIsAnswered[number].load(); }));
        return mAnswers[number];
    }

private:
    std::array<std::atomic<bool>, 4> mHasSent{}, mIsAnswered{};
    std::array<std::atomic<OSStatus>, 4> mAnswers{};
    std::vector<std::thread> mThreads;
};

bool isShown(bool visible) {
    return QTest::qWaitFor([visible] { return (visibleDialog() != nullptr) == visible; });
}

} // namespace

TEST(DialogSession, ADialogIsNeverShownWhenItsSenderHasGoneBeforeItsTurn) {
    DialogShell shell;
    std::atomic<bool> givesUp = false;
    Senders senders;
    senders.ask();
    senders.ask([&givesUp] { return givesUp.load(); });
    ASSERT_TRUE(isShown(true));
    givesUp = true;
    wakeWaits();
    EXPECT_EQ(senders.answer(1), userCanceledErr);
    press(u"OK"_s)(*visibleDialog());
    EXPECT_EQ(senders.answer(0), noErr);
    EXPECT_TRUE(isShown(false));
    QTest::qWait(0);
    EXPECT_FALSE(visibleDialog());
    EXPECT_FALSE(AppDelegate::instance()->isDisplayingPanel());
}

TEST(DialogSession, AStandardDialogWaitsForTheAppletsAndIsNoneOfThem) {
    DialogShell shell;
    Senders senders;
    senders.ask();
    ASSERT_TRUE(isShown(true));
    QDialog* const sheet = visibleDialog();
    std::optional<OSStatus> answer;
    performStandardCommand(command("syso"_4cc, "chur"_4cc, {}), AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc), [&answer](const AEDesc& reply) {
        const AEDesc* error = reply.find("errn"_4cc);
        answer = error ? error->asInt32().value_or(0) : noErr;
    });
    QCoreApplication::processEvents();
    EXPECT_EQ(DialogQueue::shared().currentDialog(), sheet);
    press(u"OK"_s)(*sheet);
    ASSERT_TRUE(QTest::qWaitFor([sheet] { return visibleDialog() && visibleDialog() != sheet; }));
    EXPECT_FALSE(AppDelegate::instance()->isDisplayingPanel()) << "the applet may be asked to end";
    EXPECT_FALSE(answer);
    visibleDialog()->reject();
    EXPECT_EQ(answer, userCanceledErr);
    EXPECT_EQ(senders.answer(0), noErr);
}

TEST(DialogSession, TheEndOfTheApplicationAnswersWhatIsShownAndWhatWaits) {
    DialogShell shell;
    Senders senders;
    senders.ask();
    senders.ask();
    ASSERT_TRUE(isShown(true));
    NSNotificationCenter::defaultCenter().postNotification(NSApplicationWillTerminateNotification, nullptr);
    EXPECT_FALSE(visibleDialog());
    for (const std::size_t sender : {0, 1})
        EXPECT_EQ(senders.answer(sender), connectionInvalid);
    AppDelegate::instance()->setDisplayingPanel(false);
}

TEST(DialogSession, TheEndOfAScriptThatHasNotWaitedForItsDialogEndsTheApplet) {
    DialogShell shell;
    std::atomic<bool> givesUp = false;
    std::thread elsewhere;
    ScriptedComponent::sHandlers["run"] = [&](ScriptedComponent::Run&) {
        elsewhere = std::thread([&givesUp] {
            AEDesc reply;
            (void)AESendMessage(displayDialog({}), &reply, kAEWaitReply, 20 * 60, {[&givesUp] { return givesUp.load(); }});
        });
        while (!AppDelegate::instance()->isDisplayingPanel())
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        givesUp = true;
        wakeWaits(); // the dialog notices this after the applet has noticed the end of the script
        return ScriptedComponent::Outcome{};
    };
    shell.run();
    elsewhere.join();
}

TEST(DialogSession, AnEventOnAnotherThreadIsAnsweredAsOnTheMainThread) {
    DialogShell shell;
    AEDesc reply = AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
    const auto handler = std::make_shared<DisplayDialogHandler>();
    auto& manager = NSAppleEventManager::sharedAppleEventManager();
    manager.setEventHandler([handler](const auto& event, const auto& replyEvent) { handler->processEvent(event, replyEvent); }, "test"_4cc,
                            "dlog"_4cc);
    std::atomic<bool> done = false;
    std::thread elsewhere([&] {
        const AEDesc event = command("test"_4cc, "dlog"_4cc, {{"----"_4cc, text("Here?")}});
        manager.dispatchRawAppleEvent(event, reply, nullptr);
        done = true;
    });
    ASSERT_TRUE(QTest::qWaitFor([] { return visibleDialog() != nullptr; }));
    EXPECT_TRUE(AppDelegate::instance()->isDisplayingPanel());
    press(u"OK"_s)(*visibleDialog());
    EXPECT_TRUE(QTest::qWaitFor([&done] { return done.load(); }));
    elsewhere.join();
    EXPECT_FALSE(AppDelegate::instance()->isDisplayingPanel());
    manager.removeEventHandlerForEventClass("test"_4cc, "dlog"_4cc);
}

} // namespace quoddle

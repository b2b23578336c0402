// SPDX-License-Identifier: MIT
// Standard commands: events go in, dialogs are answered by clicks and keys, and the replies are compared.
#include "platform/ae/AEMainThread.h"
#include "platform/appkit/NSApplication.h"
#include "platform/base/Wait.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/panels/DialogQueue.h"
#include "platform/panels/PresentOnMainThread.h"
#include "platform/panels/StandardCommands.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QListView>
#include <QPointer>
#include <QTest>
#include <QTimer>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

AEDesc text(std::string_view utf8) {
    return AEDesc::ofUTF8(utf8);
}
AEDesc whole(std::int32_t number) {
    return AEDesc::ofInt32(number);
}
AEDesc yes() {
    return AEDesc::ofBoolean(true);
}
AEDesc listOf(std::vector<AEDesc> items) {
    return AEDesc::list(std::move(items));
}

AEDesc eventFor(std::string_view command, const std::vector<AEItem>& parameters) {
    AEDesc event = AEDesc::appleEvent(fourCharCode(command.substr(0, 4)), fourCharCode(command.substr(4)));
    for (const AEItem& parameter : parameters)
        (void)event.put(parameter.key, parameter.value);
    return event;
}

AEDesc emptyReply() {
    return AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
}

/// The result in the form of a script: texts in quotes, lists and records in braces; or the number of the error.
QString shown(const AEDesc& value) {
    QStringList parts;
    if (value.type() == "bool"_4cc)
        return value.asBoolean().value_or(false) ? u"true"_s : u"false"_s;
    if (value.isRecord())
        for (const AEItem& field : value.fields())
            parts << QString::fromStdString(bytesOf(field.key)) + u':' + shown(field.value);
    else if (value.isList())
        for (const AEDesc& item : value.items())
            parts << shown(item);
    else if (value.type() == "utxt"_4cc)
        return u'"' + QString::fromStdU16String(value.asText().value_or(u"")) + u'"';
    else if (value.type() == "aprl"_4cc)
        return u"application "_s + QString::fromUtf8(value.data().data(), qsizetype(value.data().size()));
    else if (value.type() == "alis"_4cc || value.type() == "furl"_4cc)
        return (value.type() == "alis"_4cc ? u"alias "_s : u"file "_s) + QString::fromStdString(value.asFilePath().value_or("?"));
    else
        return QString::fromStdString(value.asUTF8().value_or("?"));
    return u'{' + parts.join(u", "_s) + u'}';
}

class StandardCommandsTest : public testing::Test {
protected:
    void SetUp() override { standardUserDefaults().clear(); }

    QDialog* perform(std::string_view command, const std::vector<AEItem>& parameters = {}) {
        number = performStandardCommand(eventFor(command, parameters), emptyReply(), [this](const AEDesc& reply) {
            const AEDesc* error = reply.find("errn"_4cc);
            const AEDesc* result = reply.find("----"_4cc);
            answers << (error ? QString::number(error->asInt32().value_or(0)) : result ? shown(*result) : u"nothing"_s);
        });
        QDialog* dialog = commands.currentDialog();
        EXPECT_TRUE(!dialog || QTest::qWaitForWindowExposed(dialog));
        return dialog;
    }
    QString answer() {
        QString last = answers.isEmpty() ? u"no answer"_s : answers.takeLast();
        QCoreApplication::processEvents();
        return last;
    }
    void press(const QString& name) {
        for (auto* button : commands.currentDialog()->findChildren<QAbstractButton*>())
            if (button->accessibleName() == name && button->isVisible()) {
                EXPECT_TRUE(button->isEnabled()) << name.toStdString();
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        ADD_FAILURE() << "no button " << name.toStdString();
    }
    void key(Qt::Key key) {
        QTest::keyClick(commands.currentDialog()->focusWidget() ? commands.currentDialog()->focusWidget() : commands.currentDialog(), key);
    }

    DialogQueue& commands = DialogQueue::shared();
    QStringList answers;
    std::uint64_t number = 0;
};

} // namespace

TEST_F(StandardCommandsTest, RecordsHoldWhatWasAskedFor) {
    const AEDesc three = listOf({text("One"), text("Two"), text("Three")});
    const struct {
        const char* command;
        std::vector<AEItem> parameters;
        QString button, result;
    } kCases[] = {
        {"sysodlog", {}, u"OK"_s, u"{bhit:\"OK\"}"_s},
        {"sysodlog", {}, u"Cancel"_s, u"-128"_s},
        {"sysodlog", {{"dtxt"_4cc, text("é")}}, u"OK"_s, u"{bhit:\"OK\", ttxt:\"é\"}"_s},
        {"sysodlog", {{"givu"_4cc, whole(60)}, {"btns"_4cc, three}}, u"Two"_s, u"{bhit:\"Two\", gavu:false}"_s},
        {"sysodlog", {{"btns"_4cc, three}, {"cbtn"_4cc, text("One")}}, u"One"_s, u"-128"_s},
        {"sysodlog", {{"dflt"_4cc, text("Cancel")}}, u"OK"_s, u"{bhit:\"OK\"}"_s},
        {"sysodisA", {}, u"OK"_s, u"{bhit:\"OK\"}"_s},
        {"sysodisA", {{"givu"_4cc, whole(60)}, {"btns"_4cc, three}}, u"Three"_s, u"{bhit:\"Three\", gavu:false}"_s},
        {"sysodisA", {{"btns"_4cc, three}, {"cbtn"_4cc, whole(2)}}, u"Two"_s, u"-128"_s},
    };
    for (const auto& row : kCases) {
        ASSERT_NE(perform(row.command, row.parameters), nullptr);
        press(row.button);
        EXPECT_EQ(answer(), row.result);
        EXPECT_EQ(commands.currentDialog(), nullptr);
    }
}

TEST_F(StandardCommandsTest, WrongParametersShowNothing) {
    const struct {
        const char* command;
        std::vector<AEItem> parameters;
        QString result;
    } kCases[] = {
        {"sysodlog", {{"btns"_4cc, listOf({text("1"), text("2"), text("3"), text("4")})}}, u"-50"_s},
        {"sysodlog", {{"dflt"_4cc, text("ok")}}, u"-50"_s},
        {"sysodlog", {{"givu"_4cc, text("soon")}}, u"-1700"_s},
        {"sysodlog", {{"disp"_4cc, text("no such picture")}}, u"-192"_s},
        {"sysodisA", {{"cbtn"_4cc, whole(2)}}, u"-50"_s},
        {"sysochcl", {{"dcol"_4cc, text("red")}}, u"-1700"_s},
        {"sysochcl", {{"dcol"_4cc, listOf({whole(1), whole(2), whole(65536)})}}, u"-1700"_s},
        {"sysoxxxx", {}, u"-1708"_s},
    };
    for (const auto& row : kCases) {
        EXPECT_EQ(perform(row.command, row.parameters), nullptr);
        EXPECT_EQ(answer(), row.result) << row.command;
    }
}

TEST_F(StandardCommandsTest, GivesUp) {
    for (const char* command : {"sysodlog", "sysodisA"}) {
        ASSERT_NE(perform(command, {{"givu"_4cc, whole(1)}}), nullptr);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !answers.isEmpty(); }, 10'000));
        EXPECT_EQ(answer(), u"{bhit:\"\", gavu:true}"_s);
    }
    ASSERT_NE(perform("sysodlog", {{"givu"_4cc, whole(0)}}), nullptr);
    key(Qt::Key_Return);
    EXPECT_EQ(answer(), u"{bhit:\"OK\"}"_s);
}

TEST_F(StandardCommandsTest, OneAtATimeInTheirOrder) {
    QDialog* first = perform("sysodlog", {{"----"_4cc, text("first")}});
    perform("sysodlog", {{"----"_4cc, text("second")}});
    const std::uint64_t second = number;
    perform("sysodlog", {{"----"_4cc, text("third")}, {"btns"_4cc, listOf({text("Third")})}});
    EXPECT_EQ(commands.currentDialog(), first);
    EXPECT_TRUE(answers.isEmpty());
    perform("sysodlog", {{"dflt"_4cc, text("wrong")}});
    EXPECT_EQ(answers, QStringList{u"-50"_s}) << "nobody has to be asked";
    commands.cancel(second); // the second dialog is waiting and is never shown
    commands.cancel(second);
    press(u"OK"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return commands.currentDialog() != nullptr; }));
    press(u"Third"_s);
    EXPECT_EQ(answers, QStringList({u"-50"_s, u"-128"_s, u"{bhit:\"OK\"}"_s, u"{bhit:\"Third\"}"_s}));
    ASSERT_NE(perform("sysodlog"), nullptr);
    commands.cancel(number);
    EXPECT_EQ(answers.last(), u"-128"_s);
    EXPECT_EQ(commands.currentDialog(), nullptr);
}

TEST_F(StandardCommandsTest, ListsAnswerWithWhatWasGiven) {
    const AEDesc items = listOf({text("a"), whole(2), text("c")});
    const struct {
        std::vector<AEItem> parameters;
        QString button, result;
    } kCases[] = {
        {{{"inSL"_4cc, listOf({text("2")})}}, u"OK"_s, u"{2}"_s},
        // where only one item may be chosen, the uppermost of the default items is selected
        {{{"inSL"_4cc, listOf({text("c"), whole(2)})}}, u"OK"_s, u"{2}"_s},
        {{{"inSL"_4cc, listOf({text("c"), text("a"), text("none")})}, {"mlsl"_4cc, yes()}}, u"OK"_s, u"{\"a\", \"c\"}"_s},
        {{{"empL"_4cc, yes()}, {"okbt"_4cc, text("Take")}}, u"Take"_s, u"{}"_s},
        {{{"cnbt"_4cc, text("Leave")}}, u"Leave"_s, u"false"_s},
    };
    for (const auto& row : kCases) {
        std::vector<AEItem> parameters = row.parameters;
        parameters.push_back({"----"_4cc, items});
        ASSERT_NE(perform("gtqpchlt", parameters), nullptr);
        press(row.button);
        EXPECT_EQ(answer(), row.result);
    }
    EXPECT_EQ(perform("gtqpchlt", {{"----"_4cc, listOf({})}}), nullptr);
    EXPECT_EQ(answer(), u"-50"_s);
}

TEST_F(StandardCommandsTest, FilesAreAliasesAndNamesAreFiles) {
    const QString folder = qEnvironmentVariable("HOME") + u"/files"_s;
    ASSERT_TRUE(QDir().mkpath(folder + u"/inner"_s));
    for (const QString& name : {u"/one.txt"_s, u"/two.txt"_s})
        EXPECT_TRUE(QFile(folder + name).open(QIODevice::WriteOnly));
    const auto at = [&folder](const QString& name) { return AEItem{"dflc"_4cc, AEDesc::ofFilePath((folder + name).toStdString())}; };
    const auto confirmed = [this](const char* command, const std::vector<AEItem>& parameters, const QString& button) {
        EXPECT_NE(perform(command, parameters), nullptr);
        EXPECT_TRUE(QTest::qWaitFor([&] {
            for (auto* found : commands.currentDialog()->findChildren<QAbstractButton*>())
                if (found->accessibleName() == button && found->isEnabled())
                    return true;
            return false;
        })) << command;
        press(button);
        return answer();
    };
    EXPECT_EQ(confirmed("sysostdf", {at(u"/one.txt"_s)}, u"Open"_s), u"alias "_s + folder + u"/one.txt"_s);
    EXPECT_EQ(confirmed("sysostdf", {at(u"/two.txt"_s), {"mlsl"_4cc, yes()}}, u"Open"_s), u"{alias "_s + folder + u"/two.txt}"_s);
    EXPECT_EQ(confirmed("sysostfl", {at({})}, u"Choose"_s), u"alias "_s + folder + u'/');
    EXPECT_EQ(confirmed("sysonwfl", {at({}), {"dfnm"_4cc, text("new.txt")}}, u"Save"_s), u"file "_s + folder + u"/new.txt"_s);
    for (const char* command : {"sysostdf", "sysostfl", "sysonwfl"}) {
        EXPECT_NE(perform(command, {{"dflc"_4cc, AEDesc("alis"_4cc, std::string_view("\0\1\2", 3))}}), nullptr);
        press(u"Cancel"_s);
        EXPECT_EQ(answer(), u"-128"_s);
        EXPECT_EQ(perform(command, {{"dflc"_4cc, listOf({})}}), nullptr);
        EXPECT_EQ(answer(), u"-1700"_s);
    }
    EXPECT_EQ(perform("sysostdf", {{"ftyp"_4cc, listOf({text("txt"), listOf({whole(1), whole(2)})})}}), nullptr);
    EXPECT_EQ(answer(), u"-1700"_s);
}

TEST_F(StandardCommandsTest, ColorsKeepWhatTheDialogCannotShow) {
    const AEDesc fine = listOf({whole(1000), whole(2000), AEDesc::ofDouble(65535)});
    ASSERT_NE(perform("sysochcl", {{"dcol"_4cc, fine}}), nullptr);
    press(u"OK"_s);
    EXPECT_EQ(answer(), u"{1000, 2000, 65535}"_s);
    QDialog* dialog = perform("sysochcl", {{"dcol"_4cc, fine}});
    qobject_cast<QColorDialog*>(dialog)->setCurrentColor(QColor(0, 128, 255));
    press(u"OK"_s);
    EXPECT_EQ(answer(), u"{0, 32896, 65535}"_s);
    perform("sysochcl");
    key(Qt::Key_Escape);
    EXPECT_EQ(answer(), u"-128"_s);
}

TEST_F(StandardCommandsTest, URLsAreCompletedAndRemembered) {
    const auto type = [this](const QString& address) {
        auto* field = commands.currentDialog()->findChild<QComboBox*>();
        field->setEditText(address);
        press(u"OK"_s);
    };
    const struct {
        QString typed, result;
    } kCases[] = {
        {u" https://example.com/a b "_s, u"\"https://example.com/a b\""_s},
        {u"example.com:8080/x"_s, u"\"http://example.com:8080/x\""_s},
        {u"localhost:80"_s, u"\"http://localhost:80\""_s},
        {u"mailto:someone@example.com"_s, u"\"mailto:someone@example.com\""_s},
    };
    for (const auto& row : kCases) {
        perform("sysochur");
        type(row.typed);
        EXPECT_EQ(answer(), row.result);
    }
    const AEDesc ftp = listOf({AEDesc::ofEnum("esvf"_4cc)});
    perform("sysochur", {{"cusv"_4cc, ftp}});
    EXPECT_EQ(commands.currentDialog()->findChild<QComboBox*>()->count(), 0);
    type(u"ftp.example.com"_s);
    EXPECT_EQ(answer(), u"\"ftp://ftp.example.com\""_s);
    perform("sysochur", {{"cusv"_4cc, ftp}, {"pedu"_4cc, AEDesc::ofBoolean(false)}});
    press(u"OK"_s);
    EXPECT_EQ(answer(), u"\"ftp://ftp.example.com\""_s);
    perform("sysochur", {{"cusv"_4cc, listOf({AEDesc::ofEnum("esvn"_4cc)})}, {"pedu"_4cc, AEDesc::ofBoolean(false)}});
    commands.currentDialog()->reject();
    EXPECT_EQ(answer(), u"-128"_s);
}

TEST_F(StandardCommandsTest, ApplicationsOfTheMenu) {
    const QString folder = qEnvironmentVariable("XDG_DATA_HOME") + u"/applications/"_s;
    ASSERT_TRUE(QDir().mkpath(folder + u"sub"_s) && QDir().mkpath(folder + u"Mine.app"_s));
    const auto write = [&](const QString& name, const QString& lines) {
        QFile file(folder + name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\n" + lines.toUtf8());
    };
    write(u"b.desktop"_s, u"Name=beta\n[Other]\nNoDisplay=true\n"_s);
    write(u"sub/a.desktop"_s, u"Name=Alpha\n"_s);
    write(u"mine.desktop"_s, u"Name=Mine\nX-Quoddle-Bundle="_s + folder + u"Mine.app\n"_s);
    write(u"gone.desktop"_s, u"Name=Gone\nX-Quoddle-Bundle=/nowhere/Gone.app\n"_s);
    write(u"hidden.desktop"_s, u"Name=Hidden\nNoDisplay=true\n"_s);
    write(u"other.desktop"_s, u"Name=Other\nOnlyShowIn=Nowhere;\n"_s);

    perform("sysoppcb");
    auto* list = commands.currentDialog()->findChild<QListView*>();
    EXPECT_EQ(list->model()->rowCount(), 3);
    QTest::keyClicks(list, u"be"_s);
    key(Qt::Key_Return);
    EXPECT_EQ(answer(), u"application beta"_s);
    perform("sysoppcb", {{"mlsl"_4cc, yes()}, {"rtyp"_4cc, AEDesc::ofType("alis"_4cc)}});
    commands.currentDialog()->findChild<QListView*>()->selectAll();
    press(u"Choose"_s);
    EXPECT_EQ(answer(), u"{alias "_s + folder + u"sub/a.desktop, alias "_s + folder + u"b.desktop, alias "_s + folder + u"Mine.app}"_s);
    perform("sysoppcb");
    press(u"Cancel"_s);
    EXPECT_EQ(answer(), u"-128"_s);
}

TEST_F(StandardCommandsTest, ANotificationWithoutServiceIsToldSo) {
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_EQ(perform("sysonotf", {{"----"_4cc, text("x")}}), nullptr);
    EXPECT_EQ(answer(), u"-1713"_s);
}

TEST(PresentOnMainThread, TheScriptWaitsAndTheMainThreadDoesNot) {
    std::atomic<bool> cancelled = false;
    for (const bool breaksOff : {false, true}) {
        std::atomic<bool> done = false;
        OSErr status = noErr;
        AEDesc reply = emptyReply();
        std::thread script([&] {
            status = presentOnMainThread(eventFor("sysodlog", {}), reply, AEHandlerContext{[&] { return cancelled.load(); }});
            done = true;
        });
        EXPECT_TRUE(QTest::qWaitFor([] { return DialogQueue::shared().currentDialog() != nullptr; }));
        EXPECT_FALSE(done);
        if (breaksOff) {
            cancelled = true;
            wakeWaits();
        } else {
            DialogQueue::shared().currentDialog()->done(1002);
        }
        EXPECT_TRUE(QTest::qWaitFor([&] { return done.load(); }));
        script.join();
        EXPECT_TRUE(QTest::qWaitFor([] { return DialogQueue::shared().currentDialog() == nullptr; }));
        EXPECT_EQ(status, breaksOff ? userCanceledErr : noErr);
        EXPECT_EQ(reply.find("----"_4cc) != nullptr, !breaksOff);
    }
}

TEST(PresentOnMainThread, TheEndOfTheApplicationTakesTheDialogsAway) {
    std::vector<OSStatus> answers(2);
    std::vector<std::thread> scripts;
    std::atomic<std::size_t> answered = 0;
    std::atomic<bool> isTooLate = false;
    for (OSStatus& answer : answers)
        scripts.emplace_back([&] {
            AEDesc reply = emptyReply();
            (void)presentOnMainThread(eventFor("sysodlog", {}), reply, AEHandlerContext{[&] { return isTooLate.load(); }});
            answer = reply.find("errn"_4cc) ? reply.find("errn"_4cc)->asInt32().value_or(0) : noErr;
            ++answered;
        });
    QPointer<QDialog> dialog;
    EXPECT_TRUE(QTest::qWaitFor([&] { return (dialog = DialogQueue::shared().currentDialog()) != nullptr; }));
    QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });
    NSApplication::exec();
    EXPECT_TRUE(QTest::qWaitFor([&] { return answered == scripts.size(); }));
    isTooLate = true;
    for (std::thread& script : scripts)
        script.join();
    EXPECT_EQ(answers, std::vector<OSStatus>(2, connectionInvalid));
    EXPECT_EQ(DialogQueue::shared().currentDialog(), nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.isNull(); }));
}

TEST(PresentOnMainThread, OnTheMainThreadItself) {
    QTimer::singleShot(50, qApp, [] { DialogQueue::shared().currentDialog()->done(1002); });
    AEDesc reply = emptyReply();
    EXPECT_EQ(presentOnMainThread(eventFor("sysodlog", {}), reply, {}), noErr);
    EXPECT_NE(reply.find("----"_4cc), nullptr);
}

} // namespace quoddle

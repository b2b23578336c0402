// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "dialogs/CommandHandlers.h"
#include "platform/appkit/filepanel/FileBrowser.h"
#include "platform/appkit/NSOpenPanel.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>

namespace quoddle {

using namespace Qt::StringLiterals;
using namespace test;

namespace {

class FileChooser : public ::testing::Test {
protected:
    FileChooser() {
        for (const char* folder : {"inner", "Tool.app/Contents"})
            QDir(mFolder.path()).mkpath(QString::fromLatin1(folder));
        for (const char* name : {"one.txt", "two.txt", "picture.png", "inner/leaf"}) {
            QFile file(mFolder.filePath(QString::fromLatin1(name)));
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }

    std::string path(const char* name = "") const { return mFolder.filePath(QString::fromLatin1(name)).toStdString(); }
    AEItem beginningHere() const { return {"dflc"_4cc, AEDesc::ofFilePath(mFolder.path().toStdString())}; }
    AEDesc choose(AEEventID command_, std::vector<AEItem> parameters) const {
        parameters.push_back(beginningHere());
        return command("syso"_4cc, command_, std::move(parameters));
    }
    static FileBrowser& browserOf(QDialog& dialog) {
        auto& browser = *dialog.findChild<FileBrowser*>();
        EXPECT_TRUE(QTest::qWaitFor([&browser] { return browser.model().state() == DirectoryState::complete; }));
        return browser;
    }
    /// An answer that selects the entry and confirms.
    static Answer take(const char* name) {
        return [name](QDialog& dialog) {
            browserOf(dialog).select(QString::fromLatin1(name));
            dialog.findChild<QPushButton*>(u"confirmButton"_s)->click();
        };
    }
    static AEDesc files(std::initializer_list<std::string> paths) {
        std::vector<AEDesc> list;
        for (const std::string& each : paths)
            list.push_back(AEDesc::ofFilePath(each));
        return AEDesc::list(std::move(list));
    }

    QTemporaryDir mFolder;
};

} // namespace

TEST_F(FileChooser, AnswersWithFileURLs) {
    const AEItem several{"mlsl"_4cc, AEDesc::ofBoolean(true)};
    struct {
        const char* what;
        AEEventID command;
        std::vector<AEItem> parameters;
        Answer answer;
        AEDesc result;
    } const cases[] = {
        {"a file", "stdf"_4cc, {}, take("one.txt"), AEDesc::ofFilePath(path("one.txt"))},
        {"a list of one file", "stdf"_4cc, {several}, take("one.txt"), files({path("one.txt")})},
        {"a bundle", "stdf"_4cc, {}, take("Tool.app"), AEDesc::ofFilePath(path("Tool.app/"))},
        {"a folder", "stfl"_4cc, {}, take("inner"), AEDesc::ofFilePath(path("inner/"))},
        {"a list of one folder", "stfl"_4cc, {several}, take("inner"), files({path("inner/")})},
        {"the folder shown", "stfl"_4cc, {}, press(u"Choose"_s), AEDesc::ofFilePath(path() + "/")},
        {"a name", "nwfl"_4cc, {{"dfnm"_4cc, text("fresh.txt")}}, press(u"Save"_s), AEDesc::ofFilePath(path("fresh.txt"))},
    };
    for (const bool asSheet : {true, false}) {
        DialogShell shell(asSheet);
        for (const auto& each : cases) {
            SCOPED_TRACE(std::string(each.what) + (asSheet ? ", sheet" : ", window"));
            const Conversation conversation(choose(each.command, each.parameters), each.answer);
            EXPECT_TRUE(conversation.wasDisplayingPanel());
            EXPECT_EQ(conversation.errorNumber(), 0);
            AEDesc result = conversation.result();
            EXPECT_TRUE(result == each.result) << result.asFilePath().value_or("(none)");
        }
    }
}

TEST_F(FileChooser, CancelledIsMinus128AndNothingElse) {
    for (const bool asSheet : {true, false}) {
        DialogShell shell(asSheet);
        for (const AEEventID each : {"stdf"_4cc, "stfl"_4cc, "nwfl"_4cc}) {
            const Conversation conversation(choose(each, {}), key(Qt::Key_Escape));
            EXPECT_TRUE(conversation.dialogWasSeen());
            EXPECT_EQ(conversation.errorNumber(), -128);
            EXPECT_TRUE(conversation.result().isNull());
            EXPECT_TRUE(conversation.field("errs"_4cc).isNull());
        }
    }
}

TEST_F(FileChooser, ATypeThatIsNoTextIsAnsweredWithoutAPanel) {
    DialogShell shell;
    const AEDesc noText = texts({"a", "b"});
    const Conversation conversation(choose("stdf"_4cc, {{"ftyp"_4cc, AEDesc::list({text("txt"), noText})}}), press(u"Cancel"_s));
    EXPECT_FALSE(conversation.dialogWasSeen());
    EXPECT_EQ(conversation.errorNumber(), -1700);
    EXPECT_TRUE(conversation.field("erob"_4cc) == noText);
    EXPECT_TRUE(conversation.field("errt"_4cc) == AEDesc::ofType("utf8"_4cc));
    EXPECT_TRUE(conversation.field("errs"_4cc).isNull());
    // The other commands do not look at types.
    EXPECT_TRUE(Conversation(choose("stfl"_4cc, {{"ftyp"_4cc, AEDesc::list({noText})}}), press(u"Cancel"_s)).dialogWasSeen());
}

TEST_F(FileChooser, ParametersReachThePanel) {
    struct {
        const char* what;
        AEEventID command;
        std::vector<AEItem> parameters;
        const char* message;
        const char* confirm;
        QStringList shown;
    } const cases[] = {
        {"nothing said", "stdf"_4cc, {}, "", "Open", {u"inner"_s, u"one.txt"_s, u"picture.png"_s, u"Tool.app"_s, u"two.txt"_s}},
        {"the direct parameter is the message and the prompt the button",
         "stdf"_4cc,
         {{"----"_4cc, text("<b>Which?</b>")}, {"prmp"_4cc, text("Take & Go")}},
         "<b>Which?</b>",
         "Take & Go",
         {u"inner"_s, u"one.txt"_s, u"picture.png"_s, u"Tool.app"_s, u"two.txt"_s}},
        {"types", "stdf"_4cc, {{"ftyp"_4cc, texts({"public.image", "APPL"})}}, "", "Open", {u"inner"_s, u"picture.png"_s, u"Tool.app"_s}},
        {"no types are all",
         "stdf"_4cc,
         {{"ftyp"_4cc, AEDesc::list()}},
         "",
         "Open",
         {u"inner"_s, u"one.txt"_s, u"picture.png"_s, u"Tool.app"_s, u"two.txt"_s}},
        {"one type alone", "stdf"_4cc, {{"ftyp"_4cc, text("txt")}}, "", "Open", {u"inner"_s, u"one.txt"_s, u"two.txt"_s}},
        {"contents of packages",
         "stdf"_4cc,
         {{"shpc"_4cc, AEDesc::ofBoolean(true)}, {"ftyp"_4cc, text("png")}},
         "",
         "Open",
         {u"inner"_s, u"Tool.app"_s, u"picture.png"_s}},
        {"a folder's message",
         "stfl"_4cc,
         {{"----"_4cc, text("Where?")}, {"prmp"_4cc, text("Here")}},
         "Where?",
         "Here",
         {u"inner"_s, u"one.txt"_s, u"picture.png"_s, u"Tool.app"_s, u"two.txt"_s}},
        {"a name's message is its prompt",
         "nwfl"_4cc,
         {{"prmt"_4cc, text("Save as:")}, {"prmp"_4cc, text("not read")}, {"----"_4cc, text("nor this")}},
         "Save as:",
         "Save",
         {u"inner"_s, u"one.txt"_s, u"picture.png"_s, u"Tool.app"_s, u"two.txt"_s}},
    };
    DialogShell shell;
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        const Conversation conversation(choose(each.command, each.parameters), [&each](QDialog& dialog) {
            EXPECT_EQ(dialog.findChild<QLabel*>(u"messageView"_s)->text(), QString::fromLatin1(each.message));
            EXPECT_TRUE(buttonNamed(dialog, QString::fromLatin1(each.confirm)));
            QStringList shown;
            const DirectoryModel& model = browserOf(dialog).model();
            for (int row = 0; row < model.rowCount(); ++row)
                shown << model.entryAt(row).name;
            EXPECT_EQ(shown, each.shown) << shown.join(u' ').toStdString();
            dialog.reject();
        });
        EXPECT_TRUE(conversation.dialogWasSeen());
    }
}

TEST_F(FileChooser, AURLIsNobodysAffair) {
    DialogShell shell;
    const auto event = std::make_shared<NSAppleEventDescriptor>(command("syso"_4cc, "chur"_4cc, {}));
    const auto reply = NSAppleEventDescriptor::recordDescriptor();
    ChooseURLHandler().processEvent(event, reply);
    EXPECT_EQ(reply->numberOfItems(), 0u);
    EXPECT_FALSE(visibleDialog());
}

} // namespace quoddle

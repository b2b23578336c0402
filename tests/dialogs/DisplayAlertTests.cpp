// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "platform/foundation/QtPrinters.h"

#include <QLabel>
#include <QScreen>

namespace quoddle {

using namespace Qt::StringLiterals;
using namespace test;

namespace {

AEDesc displayAlert(std::vector<AEItem> parameters) {
    return command("syso"_4cc, "disA"_4cc, std::move(parameters));
}

AEDesc alertReply(const char* button, bool gaveUp) {
    return AEDesc::record({{"bhit"_4cc, text(button)}, {"gavu"_4cc, AEDesc::ofBoolean(gaveUp)}});
}

/// The buttons from left to right, with a mark on the ones that have a key.
QStringList rowOf(const QDialog& dialog) {
    QList<QPushButton*> buttons = dialog.findChildren<QPushButton*>();
    std::sort(buttons.begin(), buttons.end(), [](const auto* a, const auto* b) { return a->x() < b->x(); });
    QStringList row;
    for (const auto* button : std::as_const(buttons)) {
        const QString key = keyEquivalent(*button);
        row << button->accessibleName() + (key == kReturnKeyEquivalent ? u"↩"_s : key == kEscapeKeyEquivalent ? u"⎋"_s : QString());
    }
    return row;
}

} // namespace

TEST(DisplayAlert, ButtonsStandFromTheRightAndCancelByPlace) {
    const AEDesc three = texts({"One", "Two", "Three"});
    const struct {
        const char* what;
        std::vector<AEItem> parameters;
        QStringList row;
        Answer answer;
        AEDesc result; // null: the dialog was cancelled
    } kCases[] = {
        {"without keys of its own the last one is the default",
         {{"btns"_4cc, three}},
         {u"One"_s, u"Two"_s, u"Three↩"_s},
         key(Qt::Key_Return),
         alertReply("Three", false)},
        {"the default button by number",
         {{"btns"_4cc, three}, {"dflt"_4cc, AEDesc::ofInt32(1)}},
         {u"One↩"_s, u"Two"_s, u"Three"_s},
         key(Qt::Key_Return),
         alertReply("One", false)},
        {"by name",
         {{"btns"_4cc, three}, {"dflt"_4cc, text("Two")}},
         {u"One"_s, u"Two↩"_s, u"Three"_s},
         press(u"One"_s),
         alertReply("One", false)},
        {"the cancel button",
         {{"btns"_4cc, three}, {"cbtn"_4cc, text("One")}},
         {u"One⎋"_s, u"Two"_s, u"Three↩"_s},
         key(Qt::Key_Escape),
         AEDesc()},
        {"default and cancel: Return",
         {{"btns"_4cc, three}, {"cbtn"_4cc, AEDesc::ofInt32(2)}, {"dflt"_4cc, AEDesc::ofInt32(2)}},
         {u"One"_s, u"Two↩"_s, u"Three"_s},
         key(Qt::Key_Return),
         AEDesc()},
        {"one called Cancel is like any other",
         {{"btns"_4cc, texts({"Cancel", "OK"})}},
         {u"Cancel⎋"_s, u"OK↩"_s},
         key(Qt::Key_Escape),
         alertReply("Cancel", false)},
        {"Escape goes from it to the one that is named",
         {{"btns"_4cc, texts({"Cancel", "Leave", "OK"})}, {"cbtn"_4cc, text("Leave")}},
         {u"Cancel"_s, u"Leave⎋"_s, u"OK↩"_s},
         press(u"Cancel"_s),
         alertReply("Cancel", false)},
        {"of two with one title only the first one cancels",
         {{"btns"_4cc, texts({"A", "A"})}, {"cbtn"_4cc, text("A")}},
         {u"A⎋"_s, u"A↩"_s},
         key(Qt::Key_Return),
         alertReply("A", false)},
        {"no buttons", {}, {u"OK↩"_s}, key(Qt::Key_Return), alertReply("OK", false)},
        {"gave up", {{"btns"_4cc, three}, {"givu"_4cc, AEDesc::ofInt32(1)}}, {u"One"_s, u"Two"_s, u"Three↩"_s}, {}, alertReply("", true)},
    };
    DialogShell shell;
    for (const bool asSheet : {true, false}) {
        shell.controller->window()->setVisible(asSheet);
        for (const auto& row : kCases) {
            SCOPED_TRACE(std::string(row.what) + (asSheet ? ", sheet" : ", modal"));
            const Conversation conversation(displayAlert(row.parameters), [&row](QDialog& dialog) {
                EXPECT_EQ(rowOf(dialog), row.row);
                if (row.answer)
                    row.answer(dialog);
            });
            EXPECT_EQ(conversation.result(), row.result);
            EXPECT_EQ(conversation.errorNumber(), row.result.isNull() ? -128 : 0);
        }
    }
}

TEST(DisplayAlert, WrongParametersAreAnsweredWithoutAnAlert) {
    DialogShell shell;
    const struct {
        std::vector<AEItem> parameters;
        OSStatus number;
        const char* message;
    } kCases[] = {
        {{{"givu"_4cc, texts({"soon", "later"})}}, -1700, ""},
        {{{"btns"_4cc, texts({"1", "2", "3", "4"})}}, -50, "Maximum of 3 buttons allowed."},
        {{{"dflt"_4cc, AEDesc::ofInt32(1)}}, -50, "Specified default button does not exist."},
        {{{"btns"_4cc, text("A")}, {"cbtn"_4cc, text("a")}}, -50, "Specified cancel button does not exist."},
    };
    for (const auto& row : kCases) {
        const Conversation conversation(displayAlert(row.parameters), press(u"OK"_s));
        EXPECT_FALSE(conversation.dialogWasSeen());
        EXPECT_EQ(conversation.errorNumber(), row.number);
        EXPECT_EQ(conversation.field("errs"_4cc).asUTF8().value_or(""), row.message);
    }
}

TEST(DisplayAlert, FitsTheScreenWhateverItSays) {
    DialogShell shell;
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const QByteArray longText = QByteArray("many words ").repeated(100'000), longWord(5000, 'w'),
                     manyLines = QByteArray("line\n").repeated(60);
    const std::string longTitle(400, 'b');
    const AEDesc longTitles = texts({longTitle.c_str(), longTitle.c_str(), "OK"});
    const struct {
        const char* what;
        std::vector<AEItem> parameters;
    } kCases[] = {
        {"an endless text", {{"----"_4cc, text(longText)}}},
        {"an endless message", {{"----"_4cc, text("short")}, {"mesS"_4cc, text(longText)}}},
        {"both of many lines", {{"----"_4cc, text(manyLines)}, {"mesS"_4cc, text(manyLines)}}},
        {"one word", {{"----"_4cc, text(longWord)}, {"mesS"_4cc, text(longWord)}}},
        {"long titles", {{"----"_4cc, text("x")}, {"btns"_4cc, longTitles}}},
        {"an endless title", {{"btns"_4cc, texts({longText.constData(), "OK"})}, {"appr"_4cc, text(longText)}}},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.what);
        const Conversation conversation(displayAlert(row.parameters), [&screen](QDialog& dialog) {
            EXPECT_LE(dialog.width(), screen.width() - 10);
            EXPECT_LE(dialog.height(), screen.height());
            EXPECT_LT(dialog.windowTitle().size(), 1000);
            EXPECT_TRUE(dialog.rect().contains(buttonNamed(dialog, u"OK"_s)->geometry()));
            // the icon keeps its place when the buttons are wider than the text
            EXPECT_EQ(dialog.findChild<QLabel*>(u"iconView"_s)->x(), 20);
            press(u"OK"_s)(dialog);
        });
        EXPECT_EQ(conversation.result().find("bhit"_4cc)->asUTF8(), "OK");
    }
}

} // namespace quoddle

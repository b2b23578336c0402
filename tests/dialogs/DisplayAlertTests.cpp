// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "platform/foundation/QtPrinters.h"

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

/// The buttons from the left to the right, those with a key marked.
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
        AEDesc result; // null: cancelled
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

} // namespace quoddle

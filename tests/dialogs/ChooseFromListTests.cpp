// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "platform/foundation/QtPrinters.h"
#include "platform/panels/ChooseFromListPanel.h"

#include <QLabel>
#include <QTableView>

namespace quoddle {

using namespace Qt::StringLiterals;
using namespace test;

namespace {

const AEDesc kItems = AEDesc::list({text("pear"), AEDesc::ofInt32(42), text("Fig"), text("pear")});

AEDesc chooseFromList(std::vector<AEItem> parameters) {
    parameters.insert(parameters.begin(), {"----"_4cc, kItems});
    return command("gtqp"_4cc, "chlt"_4cc, std::move(parameters));
}

QTableView& tableOf(QDialog& dialog) {
    return *dialog.findChild<QTableView*>(u"tableView"_s);
}

QPushButton& okButtonOf(QDialog& dialog) {
    return *dialog.findChild<QPushButton*>(u"okButton"_s);
}

Answer select(std::initializer_list<int> rows, Answer then) {
    return [rows = std::vector<int>(rows), then](QDialog& dialog) {
        for (const int row : rows)
            tableOf(dialog).selectionModel()->select(tableOf(dialog).model()->index(row, 0), QItemSelectionModel::Select);
        then(dialog);
    };
}

void doubleClickThirdRow(QDialog& dialog) {
    QTableView& table = tableOf(dialog);
    const QPoint place = table.visualRect(table.model()->index(2, 0)).center();
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, place);
}

void typeAhead(QDialog& dialog) {
    QTest::keyClicks(dialog.focusWidget(), u"f"_s);
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
}

} // namespace

TEST(ChooseFromList, AnswersWithTheItemsThemselves) {
    const AEDesc no = AEDesc::ofBoolean(false), yes = AEDesc::ofBoolean(true);
    const struct {
        const char* what;
        std::vector<AEItem> parameters;
        bool okAtFirst;
        Answer answer;
        AEDesc result;
    } kCases[] = {
        {"one, which is a list as well", {}, false, select({1}, key(Qt::Key_Return)), AEDesc::list({AEDesc::ofInt32(42)})},
        {"cancelled", {}, false, select({1}, key(Qt::Key_Escape)), no},
        {"Return does nothing without a choice",
         {},
         false,
         [](QDialog& dialog) {
             key(Qt::Key_Return)(dialog);
             EXPECT_TRUE(dialog.isVisible());
             press(u"Cancel"_s)(dialog);
         },
         no},
        {"nothing, where that is allowed", {{"empL"_4cc, yes}}, true, key(Qt::Key_Return), AEDesc::list()},
        {"several, in the order of the list",
         {{"mlsl"_4cc, yes}},
         false,
         select({3, 0, 1}, press(u"OK"_s)),
         AEDesc::list({text("pear"), AEDesc::ofInt32(42), text("pear")})},
        {"the given ones: the first of equals, unknown ones ignored",
         {{"mlsl"_4cc, yes}, {"inSL"_4cc, texts({"Fig", "plum", "pear", "Fig"})}},
         true,
         key(Qt::Key_Return),
         AEDesc::list({text("pear"), text("Fig")})},
        {"a given one that is no list", {{"inSL"_4cc, text("42")}}, true, key(Qt::Key_Return), AEDesc::list({AEDesc::ofInt32(42)})},
        {"only unknown ones", {{"inSL"_4cc, texts({"plum"})}}, false, press(u"Cancel"_s), no},
        {"a double click", {}, false, doubleClickThirdRow, AEDesc::list({text("Fig")})},
        {"by its first letter", {}, false, typeAhead, AEDesc::list({text("Fig")})},
        {"names of its own",
         {{"okbt"_4cc, text("Take & go")}, {"cnbt"_4cc, text("Leave")}, {"prmp"_4cc, text("<b>Which?</b>")}},
         false,
         [](QDialog& dialog) {
             EXPECT_EQ(dialog.findChild<QLabel*>(u"promptField"_s)->text(), u"<b>Which?</b>"_s);
             EXPECT_TRUE(buttonNamed(dialog, u"Take & go"_s));
             press(u"Leave"_s)(dialog);
         },
         no},
    };
    DialogShell shell;
    for (const bool asSheet : {true, false}) {
        shell.controller->window()->setVisible(asSheet);
        for (const auto& row : kCases) {
            SCOPED_TRACE(std::string(row.what) + (asSheet ? ", sheet" : ", modal"));
            const Conversation conversation(chooseFromList(row.parameters), [&row](QDialog& dialog) {
                EXPECT_EQ(okButtonOf(dialog).isEnabled(), row.okAtFirst);
                row.answer(dialog);
            });
            EXPECT_TRUE(conversation.dialogWasSeen());
            EXPECT_EQ(conversation.result(), row.result);
            EXPECT_EQ(conversation.errorNumber(), 0);
        }
    }
}

TEST(ChooseFromList, OfManyGivenItemsTheUppermostIsChosenWhereOneMayBe) {
    ChooseFromListParameters parameters;
    for (int row = 0; row < 40; ++row)
        parameters.texts << QString::number(row);
    for (int row = 39; row >= 3; --row)
        parameters.defaultRows << row;
    EXPECT_EQ(ChooseFromListPanel(parameters).viewController().selectedRows(), QList<int>{3});
    parameters.multipleSelectionsAllowed = true;
    EXPECT_EQ(ChooseFromListPanel(parameters).viewController().selectedRows().size(), 37);
}

TEST(ChooseFromList, KeysBeginAtTheFirstRowWhereNothingIsChosen) {
    ChooseFromListParameters parameters;
    parameters.texts = {u"pear"_s, u"plum"_s, u"apple"_s, u"prune"_s};
    for (const bool isMultiple : {false, true})
        for (const auto& [key, row] : std::initializer_list<std::pair<Qt::Key, int>>{{Qt::Key_Down, 0},
                                                                                     {Qt::Key_Up, 0},
                                                                                     {Qt::Key_Home, 0},
                                                                                     {Qt::Key_PageDown, 0},
                                                                                     {Qt::Key_P, 0},
                                                                                     {Qt::Key_Space, 0},
                                                                                     {Qt::Key_A, 2},
                                                                                     {Qt::Key_End, 3}}) {
            parameters.multipleSelectionsAllowed = isMultiple;
            ChooseFromListPanel panel(parameters);
            panel.prepareForModalForm();
            panel.window().show();
            panel.window().activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(&panel.window()));
            QTableView& table = *panel.viewController().tableView();
            EXPECT_TRUE(panel.viewController().selectedRows().isEmpty());
            QTest::keyClick(&table, key);
            EXPECT_EQ(panel.viewController().selectedRows(), QList<int>{row}) << "key " << key << (isMultiple ? ", multiple" : "");
        }
}

TEST(ChooseFromList, AListWithoutItemsIsAnError) {
    DialogShell shell;
    for (const AEDesc& list : {AEDesc::list(), AEDesc()}) {
        const Conversation conversation(command("gtqp"_4cc, "chlt"_4cc, {{"----"_4cc, list}}), press(u"OK"_s));
        EXPECT_FALSE(conversation.dialogWasSeen());
        EXPECT_EQ(conversation.errorNumber(), paramErr);
        EXPECT_EQ(conversation.field("errs"_4cc).asUTF8(), "The list is empty.");
    }
}

TEST(ChooseFromList, OKGoesWithTheLastChoice) {
    DialogShell shell;
    const Conversation conversation(chooseFromList({{"inSL"_4cc, text("Fig")}}), [](QDialog& dialog) {
        EXPECT_TRUE(okButtonOf(dialog).isEnabled());
        tableOf(dialog).clearSelection();
        EXPECT_FALSE(okButtonOf(dialog).isEnabled());
        press(u"Cancel"_s)(dialog);
    });
    EXPECT_EQ(conversation.result(), AEDesc::ofBoolean(false));
}

TEST(ChooseFromList, WhatHasNoTextOfItsOwnIsShownByWhatItHolds) {
    ChooseFromListParameters parameters;
    const AEDesc pair = AEDesc::list({AEDesc::ofInt32(1), text("two")}),
                 record = AEDesc::record({{"pnam"_4cc, text("Ann")}, {"ID  "_4cc, pair}});
    AEDesc deep = pair;
    for (int i = 0; i < 60; ++i)
        deep = AEDesc::list({deep});
    const AEDesc event = command(
        "gtqp"_4cc, "chlt"_4cc,
        {{"----"_4cc, AEDesc::list({pair, record, deep, text("t"), AEDesc::ofType("msng"_4cc)})}, {"inSL"_4cc, AEDesc::list({record})}});
    ASSERT_FALSE(ChooseFromListParameters::read(event, parameters));
    EXPECT_EQ(parameters.texts, (QStringList{u"1, two"_s, u"Ann, 1, two"_s, QString(), u"t"_s, u"missing value"_s}));
    EXPECT_EQ(parameters.defaultRows, QList<int>{1});
}

TEST(ChooseFromList, AWindowOfItsOwnLeavesRoomForItsFrame) {
    DialogShell shell(false);
    const AEDesc many = AEDesc::list(std::vector<AEDesc>(1000, text("item")));
    const Conversation conversation(command("gtqp"_4cc, "chlt"_4cc, {{"----"_4cc, many}}), [](QDialog& dialog) {
        EXPECT_LE(dialog.height(), dialog.screen()->availableGeometry().height() - 30);
        key(Qt::Key_Escape)(dialog);
    });
    EXPECT_TRUE(conversation.dialogWasSeen());
}

TEST(ChooseFromList, FitsTheScreenWhateverItSays) {
    DialogShell shell;
    const QByteArray longText = QByteArray("many words ").repeated(100'000), longWord(5000, 'w');
    for (const QByteArray& given : {longText, longWord}) {
        const Conversation conversation(
            chooseFromList({{"prmp"_4cc, text(given)}, {"okbt"_4cc, text(given)}, {"cnbt"_4cc, text(given)}, {"appr"_4cc, text(given)}}),
            [](QDialog& dialog) {
                const QRect screen = dialog.screen()->availableGeometry();
                EXPECT_LE(dialog.width(), screen.width() - 10);
                EXPECT_LE(dialog.height(), screen.height());
                EXPECT_TRUE(dialog.rect().contains(okButtonOf(dialog).geometry()));
                EXPECT_LE(dialog.findChild<QLabel*>(u"promptField"_s)->text().size(), 50'001);
                key(Qt::Key_Escape)(dialog);
            });
        EXPECT_TRUE(conversation.dialogWasSeen());
    }
}

TEST(ChooseFromListPanel, ColumnIsAsWideAsTheWidestOfTheLongestTexts) {
    const QFont font;
    const QFontMetricsF metrics(font);
    const auto width = [&metrics](const QString& text) { return static_cast<int>(std::ceil(metrics.horizontalAdvance(text))) + 6; };
    EXPECT_EQ(ChooseFromListPanel::_calculateColumnWidthFor({}, font), 0);
    EXPECT_EQ(ChooseFromListPanel::_calculateColumnWidthFor({u"iiii"_s, u"WWW"_s}, font), width(u"WWW"_s));
    // Texts of less than half the length of the longest are not measured, however wide their letters are.
    EXPECT_EQ(ChooseFromListPanel::_calculateColumnWidthFor({u"WWWW"_s, u"iiiiiiiii"_s}, font), width(u"iiiiiiiii"_s));
    // No more than thirty texts are measured.
    QStringList many(30, u"iiii"_s);
    EXPECT_EQ(ChooseFromListPanel::_calculateColumnWidthFor(many + QStringList{u"WWW"_s}, font), width(u"iiii"_s));
}

TEST(ChooseFromListPanel, IsAsHighAsItsItemsAndTheScreenAllows) {
    ChooseFromListParameters parameters;
    NSWindow parent; // a window that has not been placed yet
    const auto heightOf = [&](int items) {
        parameters.texts = QStringList(items, u"item"_s);
        ChooseFromListPanel panel(parameters);
        panel.prepareForSheetOn(parent);
        EXPECT_EQ(panel.window().width(), 340);
        return panel.window().height();
    };
    const int row = heightOf(12) - heightOf(11);
    EXPECT_GT(row, 10);
    EXPECT_EQ(heightOf(14) - heightOf(11), 3 * row);
    EXPECT_EQ(heightOf(100'000), QGuiApplication::primaryScreen()->availableGeometry().height());
    EXPECT_GE(heightOf(1), 41 + 90);
}

} // namespace quoddle

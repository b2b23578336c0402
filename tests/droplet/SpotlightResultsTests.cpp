// SPDX-License-Identifier: MIT
#include "droplet/NSColor+Additions.h"
#include "droplet/SpotlightResultsCell.h"
#include "droplet/SpotlightResultsController.h"
#include "platform/foundation/QtPrinters.h"

#include <gtest/gtest.h>

#include <cmath>

#include <QAbstractItemModelTester>
#include <QDir>
#include <QImage>
#include <QPainter>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

SpotlightMatchRef match(const QString& path, double relevance) {
    return std::make_shared<SpotlightMatch>(path, QStringList{u"a"_s}, relevance);
}

QString shown(const SpotlightResultsController& controller) {
    QStringList names;
    for (const SpotlightMatchRef& each : controller.arrangedObjects())
        names << each->path().section(u'/', -1);
    return names.join(u' ');
}

} // namespace

TEST(SpotlightResults, TheMostRelevantComesFirst) {
    SpotlightResultsController controller;
    const QAbstractItemModelTester tester(&controller, QAbstractItemModelTester::FailureReportingMode::Fatal);
    controller.addObjects({match(u"/x/b"_s, 1), match(u"/y/a"_s, 1), match(u"/c"_s, std::nan("")), match(u"/d"_s, 2)});
    EXPECT_EQ(shown(controller), u"d a b c"_s);
    const QPersistentModelIndex b = controller.index(2);

    // Later ones are merged in, and who points at a hit follows it.
    const SpotlightMatchRef first = match(u"/e"_s, 5);
    controller.addObjects({match(u"/aa"_s, 1), first, match(u"/f"_s, 0.5)});
    EXPECT_EQ(shown(controller), u"e d a aa b f c"_s);
    EXPECT_EQ(b.row(), 4);
    controller.removeObjects({first.get(), controller.arrangedObjects().at(2).get(), controller.arrangedObjects().at(3).get()});
    EXPECT_EQ(shown(controller), u"d b f c"_s);
    EXPECT_EQ(b.row(), 1);
    controller.removeAllObjects();
    EXPECT_FALSE(b.isValid());
}

TEST(SpotlightResults, ARowIsReadOut) {
    const auto inHome = match(QDir::homePath() + u"/Documents/a b.txt"_s, 1);
    EXPECT_EQ(SpotlightResultsCell::accessibilityValue(inHome.get()), u"Name: a b.txt.\nPath: ~/Documents"_s);
    EXPECT_EQ(SpotlightResultsCell::accessibilityValue(match(u"/etc/hosts"_s, 1).get()), u"Name: hosts.\nPath: /etc"_s);
    EXPECT_EQ(SpotlightResultsCell::accessibilityValue(nullptr), QString());
}

TEST(SpotlightResults, WhatMatchedIsMarkedInASelectedRowToo) {
    SpotlightResultsController controller;
    controller.addObjects({match(u"/tmp/xxaxx"_s, 1)});
    const SpotlightResultsCell cell;
    for (const QStyle::State state : {QStyle::State(QStyle::State_Enabled), QStyle::State_Enabled | QStyle::State_Selected}) {
        QImage image(300, 35, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        QStyleOptionViewItem option;
        option.rect = image.rect();
        option.state = state;
        cell.paint(&painter, option, controller.index(0));
        int marked = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                marked += image.pixel(x, y) == QColor::fromRgbF(0.556f, 0.979f, 0.0f).rgb();
        EXPECT_GT(marked, 20) << int(state);
        EXPECT_LT(marked, 300) << "one letter of five: " << int(state);
    }
}

TEST(SpotlightResults, ANameKeepsItsColorInASelectedRowWhereItCanBeRead) {
    const struct {
        const char* name;
        QColor text, highlightedText, highlight;
    } rows[] = {
        {"light", {20, 0, 0}, Qt::green, {170, 210, 235}},
        {"light with a middling selection", {20, 0, 0}, Qt::green, {48, 140, 198}},
        {"light with a dark selection", Qt::black, Qt::green, {0, 0, 128}},
        {"light with a black selection", Qt::black, Qt::green, Qt::black},
        {"dark", {250, 250, 255}, Qt::green, {48, 140, 198}},
        {"dark with a white selection", Qt::white, Qt::green, Qt::white},
    };
    SpotlightResultsController controller;
    controller.addObjects({match(u"/tmp/HHHHHHHHHaHHHHHHHHH"_s, 1)});
    const SpotlightResultsCell cell;
    for (const auto& row : rows) {
        QImage image(300, 35, QImage::Format_RGB32);
        QPainter painter(&image);
        QStyleOptionViewItem option;
        option.rect = image.rect();
        option.state = QStyle::State_Enabled | QStyle::State_Active | QStyle::State_Selected;
        option.showDecorationSelected = true;
        for (const auto& [role, color] : {std::pair(QPalette::Text, row.text), std::pair(QPalette::HighlightedText, row.highlightedText),
                                          std::pair(QPalette::Highlight, row.highlight)})
            option.palette.setColor(role, color);
        cell.paint(&painter, option, controller.index(0));
        int inColor = 0, inOther = 0;
        for (int y = 0; y < 20; ++y)
            for (int x = 38; x < image.width(); ++x) {
                inColor += image.pixel(x, y) == row.text.rgb();
                inOther += image.pixel(x, y) == row.highlightedText.rgb();
            }
        EXPECT_GT(inColor, 50) << row.name;
        EXPECT_EQ(inOther, 0) << row.name;
        const QColor around = image.pixelColor(290, 3);
        EXPECT_EQ(contrastingLabelColor(around), QColor(contrastingLabelColor(row.text) == Qt::black ? Qt::white : Qt::black)) << row.name;
        EXPECT_EQ(around == row.highlight, std::string_view(row.name) == "light") << "no other colour than is needed: " << row.name;
    }
}

} // namespace quoddle

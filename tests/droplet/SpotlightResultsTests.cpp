// SPDX-License-Identifier: MIT
#include "droplet/NSColor+Additions.h"
#include "droplet/SpotlightResultsCell.h"
#include "droplet/SpotlightResultsController.h"
#include "platform/foundation/QtPrinters.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

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

    // Later hits are merged in, and a persistent index follows its hit.
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

/// Adds and removes hits in few places and in many, and compares with a list that is sorted anew each time.
TEST(SpotlightResults, StayInOrderWhateverComesAndGoes) {
    std::mt19937 random(1);
    SpotlightResultsController controller;
    const QAbstractItemModelTester tester(&controller, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QList<SpotlightMatchRef> model;
    std::vector<std::pair<SpotlightMatchRef, QPersistentModelIndex>> followed;
    int number = 0;
    for (int round = 0; round < 60; ++round) {
        QList<SpotlightMatchRef> added;
        for (unsigned i = random() % (round % 3 ? 5 : 60); i > 0; --i)
            added << match(u"/%1/%2"_s.arg(++number).arg(random() % 40), random() % 3 + 1.0);
        controller.addObjects(added);
        model += added;
        QSet<const SpotlightMatch*> removed;
        for (const SpotlightMatchRef& each : std::as_const(model))
            if (random() % (round % 4 ? 30 : 2) == 0)
                removed << each.get();
        controller.removeObjects(removed);
        model.removeIf([&removed](const SpotlightMatchRef& each) { return removed.contains(each.get()); });
        std::stable_sort(model.begin(), model.end(), [](const SpotlightMatchRef& a, const SpotlightMatchRef& b) {
            return std::pair(-a->relevance(), a->path().section(u'/', -1)) < std::pair(-b->relevance(), b->path().section(u'/', -1));
        });
        ASSERT_EQ(controller.arrangedObjects(), model) << round;
        for (const auto& [hit, index] : followed)
            ASSERT_EQ(index.row(), model.indexOf(hit)) << round;
        if (!model.isEmpty()) {
            const int row = static_cast<int>(random() % static_cast<unsigned>(model.size()));
            followed.emplace_back(model.at(row), controller.index(row));
        }
    }
    EXPECT_GT(number, 500);
}

TEST(SpotlightResults, ManyThatComeOrGoAreFewChanges) {
    SpotlightResultsController controller;
    int changes = 0;
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        QObject::connect(&controller, signal, [&changes] { ++changes; });
    QObject::connect(&controller, &QAbstractItemModel::layoutChanged, [&changes] { ++changes; });
    QList<SpotlightMatchRef> even, odd;
    for (int i = 0; i < 1000; ++i)
        (i % 2 ? odd : even) << match(u"/%1"_s.arg(i, 4), 1);
    controller.addObjects(even);
    controller.addObjects(odd);
    QSet<const SpotlightMatch*> gone;
    for (const SpotlightMatchRef& each : odd)
        gone << each.get();
    controller.removeObjects(gone);
    EXPECT_EQ(controller.arrangedObjects(), even);
    EXPECT_LE(changes, 5);
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

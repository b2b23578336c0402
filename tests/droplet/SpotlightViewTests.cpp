// SPDX-License-Identifier: MIT
#include "droplet/SpotlightViewController.h"

#include "droplet/DropletWindowController.h"
#include "droplet/SpotlightResultsController.h"
#include "droplet/SpotlightResultsView.h"
#include "platform/foundation/LogCatcher.h"
#include "platform/foundation/QtPrinters.h"
#include "window/Shell.h"

#include <QLabel>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QTest>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::ScriptedComponent;
using Shell = test::ShellWith<DropletWindowController>;

namespace {

/// The search pane of a droplet, which searches a folder of its own.
class SpotlightViewTest : public testing::Test {
protected:
    explicit SpotlightViewTest(const char* handlers = "open appletfileisacceptable")
        : shell("KVBStayOpen = YES; KVBShowStartupScreen = NO;", handlers), pane(shell.setUp().searchViewController()),
          field(*pane.view()->findChild<QLineEdit*>(u"searchView"_s)), count(*pane.view()->findChild<QLabel*>(u"resultsCountView"_s)) {
        ScriptedComponent::sHandlers["appletfileisacceptable"] = [this](ScriptedComponent::Run& run) { return judge(run); };
        ScriptedComponent::sHandlers["open"] = [this](ScriptedComponent::Run& run) -> ScriptedComponent::Outcome {
            QStringList names;
            for (const AEDesc& file : run.event.find("----"_4cc)->items())
                names << QString::fromStdString(file.asUTF8().value_or("")).section(u'/', -1);
            MainThread::dispatchAsync([this, names] { opened << names; });
            return {};
        };
        pane.nameQuery().setSearchScopes({folder.path()});
    }

    void make(const QStringList& names) {
        for (const QString& name : names) {
            QFile file(folder.filePath(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }
    QStringList shown() const {
        QStringList names;
        for (const SpotlightMatchRef& match : pane.resultsController().arrangedObjects())
            names << match->previewItemTitle();
        return names;
    }
    bool shows(const QStringList& names) {
        return QTest::qWaitFor([&] { return !pane.nameQuery().isGathering() && shown() == names; }, 10'000);
    }

    QTemporaryDir folder;
    std::function<ScriptedComponent::Outcome(ScriptedComponent::Run&)> judge = [](ScriptedComponent::Run&) {
        return ScriptedComponent::Outcome{AEDesc::ofBoolean(true)};
    };
    QStringList opened;
    Shell shell;
    SpotlightViewController& pane;
    QLineEdit& field;
    QLabel& count;
};

} // namespace

TEST_F(SpotlightViewTest, FindsRanksAndFollows) {
    make({u"report.txt"_s, u"Project Report.pdf"_s, u"b report.txt"_s, u"a report.txt"_s, u"other.txt"_s});
    field.setText(u"r"_s);
    EXPECT_FALSE(pane.nameQuery().isStarted()) << "one character is no search";
    EXPECT_TRUE(count.text().isEmpty());

    field.setText(u"  report "_s);
    EXPECT_TRUE(shows({u"report.txt"_s, u"a report.txt"_s, u"b report.txt"_s, u"Project Report.pdf"_s})) << testing::PrintToString(shown());
    EXPECT_EQ(count.text(), u"4 found"_s);
    EXPECT_EQ(pane.contentTerms(), QStringList{u"report"_s});

    // A hit that stays is the same object. The best hit is selected until the user chooses another one.
    const SpotlightMatchRef kept = pane.resultsController().arrangedObjects().at(1);
    EXPECT_EQ(pane.selectedObjects().size(), 1);
    make({u"report"_s});
    ASSERT_TRUE(QFile::remove(folder.filePath(u"b report.txt"_s)));
    EXPECT_TRUE(shows({u"report"_s, u"report.txt"_s, u"a report.txt"_s, u"Project Report.pdf"_s})) << testing::PrintToString(shown());
    EXPECT_EQ(pane.resultsController().arrangedObjects().at(2), kept);
    EXPECT_EQ(pane.paths().size(), 4);
    EXPECT_EQ(pane.selectedObjects().value(0), pane.resultsController().arrangedObjects().first());
    pane.resultsView()->setCurrentIndex(pane.resultsController().index(2));
    ASSERT_TRUE(QFile::remove(folder.filePath(u"report"_s)));
    EXPECT_TRUE(shows({u"report.txt"_s, u"a report.txt"_s, u"Project Report.pdf"_s}));
    EXPECT_EQ(pane.selectedObjects().value(0), kept);

    // When the selected hit goes, the next one takes its place, also when hits above it go at the same time.
    make({u"report 1"_s, u"report 2"_s, u"report 3"_s, u"report 4"_s, u"report 5"_s});
    EXPECT_TRUE(QTest::qWaitFor([&] { return pane.paths().size() == 8; }, 10'000));
    const QStringList before = shown();
    pane.resultsView()->setCurrentIndex(pane.resultsController().index(3));
    QStringList gone;
    for (const QString& name : before.first(4))
        gone << folder.filePath(name);
    NSNotificationCenter::defaultCenter().postNotification(NSMetadataQueryDidUpdateNotification, &pane.nameQuery(),
                                                           {{NSMetadataQueryUpdateRemovedItemsKey, gone}});
    EXPECT_EQ(shown(), before.mid(4));
    EXPECT_EQ(pane.selectedObjects().value(0), pane.resultsController().arrangedObjects().first());
    EXPECT_EQ(count.text(), u"4 found"_s);

    field.setText(u"other"_s);
    EXPECT_TRUE(pane.resultsController().arrangedObjects().isEmpty()) << "no hit of the text before";
    EXPECT_TRUE(shows({u"other.txt"_s}));
    field.clear();
    EXPECT_TRUE(pane.paths().isEmpty());
    EXPECT_FALSE(pane.nameQuery().isStarted());
    EXPECT_TRUE(count.text().isEmpty());
}

TEST_F(SpotlightViewTest, TracesWhatComesAndHowItComes) {
    QLoggingCategory::setFilterRules(u"quoddle.trace=true"_s);
    const LogCatcher log;
    make({u"report.txt"_s});
    field.setText(u"report"_s);
    EXPECT_TRUE(shows({u"report.txt"_s}));
    const QString line = u"kMDItemFSName: %1, kMDItemContentType: public.plain-text, kMDItemContentTypeTree: ("_s;
    EXPECT_EQ(log.count(line.arg(u"report.txt"_s)), 1);
    EXPECT_EQ(log.count(u") relevance: "_s), 1);
    EXPECT_EQ(log.count(u"), relevance"_s), 0);
    make({u"report 2.txt"_s}); // changes a file that has been found already
    EXPECT_TRUE(shows({u"report.txt"_s, u"report 2.txt"_s}));
    EXPECT_EQ(log.count(line.arg(u"report 2.txt"_s)), 1);
    EXPECT_EQ(log.count(u"), relevance: "_s), 1);
    EXPECT_EQ(log.count(u" relevance: "_s), 2);
    QLoggingCategory::setFilterRules({});
}

TEST_F(SpotlightViewTest, OpensWhatIsSelected) {
    make({u"report.txt"_s, u"a report.txt"_s, u"b report.txt"_s});
    field.setText(u"report"_s);
    ASSERT_TRUE(shows({u"report.txt"_s, u"a report.txt"_s, u"b report.txt"_s}));
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened == QStringList{u"report.txt"_s}; }));
    opened.clear();
    auto* selection = pane.resultsView()->selectionModel();
    selection->select(pane.resultsController().index(2), QItemSelectionModel::ClearAndSelect);
    selection->select(pane.resultsController().index(1), QItemSelectionModel::Select);
    QTest::keyClick(pane.resultsView(), Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return opened == QStringList({u"a report.txt"_s, u"b report.txt"_s});
    })) << testing::PrintToString(opened);
}

TEST_F(SpotlightViewTest, TheScriptJudgesTheHits) {
    make({u"report 1"_s, u"report 2"_s, u"report 3"_s});
    judge = [](ScriptedComponent::Run& run) -> ScriptedComponent::Outcome {
        return {AEDesc::ofBoolean(!run.event.find("----"_4cc)->items()[0].asUTF8()->ends_with("2"))};
    };
    field.setText(u"report"_s);
    EXPECT_TRUE(shows({u"report 1"_s, u"report 3"_s}));
    EXPECT_EQ(count.text(), u"2 found"_s);
}

/// A waiting hook lets other events in: here more results, and the removal of the file that the hook is asked about.
TEST_F(SpotlightViewTest, WhatComesWhileTheScriptWaitsIsNeitherLostNorShownTwice) {
    make({u"report 1"_s, u"report 2"_s, u"report 3"_s});
    QStringList asked;
    judge = [&](ScriptedComponent::Run& run) -> ScriptedComponent::Outcome {
        const QString name = QString::fromStdString(*run.event.find("----"_4cc)->items()[0].asUTF8()).section(u'/', -1);
        asked << name;
        if (asked.size() == 2) {
            make({u"report 4"_s});
            QFile::remove(folder.filePath(name));
            QTest::qWait(700); // milliseconds; longer than the interval between batches
        }
        return {AEDesc::ofBoolean(true)};
    };
    field.setText(u"report"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return asked.size() >= 4; }, 10'000));
    QTest::qWait(400);
    QStringList expected{u"report 1"_s, u"report 2"_s, u"report 3"_s, u"report 4"_s};
    expected.removeAll(asked.at(1));
    EXPECT_TRUE(shows(expected)) << testing::PrintToString(shown());
    EXPECT_EQ(pane.paths().size(), 3);

    // Two files go and come back while the script is asked: the file that it is asked about, and the one before.
    field.clear();
    asked.clear();
    judge = [&](ScriptedComponent::Run& run) -> ScriptedComponent::Outcome {
        asked << QString::fromStdString(*run.event.find("----"_4cc)->items()[0].asUTF8()).section(u'/', -1);
        if (asked.size() == 2) {
            const QStringList paths{folder.filePath(asked[0]), folder.filePath(asked[1])};
            const QList<NSMetadataItem> items{NSMetadataItem(paths[0]), NSMetadataItem(paths[1])};
            for (const QVariantMap& change : {QVariantMap{{NSMetadataQueryUpdateRemovedItemsKey, paths}},
                                              QVariantMap{{NSMetadataQueryUpdateAddedItemsKey, QVariant::fromValue(items)}}})
                NSNotificationCenter::defaultCenter().postNotification(NSMetadataQueryDidUpdateNotification, &pane.nameQuery(), change);
        }
        return {AEDesc::ofBoolean(true)};
    };
    field.setText(u"report"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return asked.size() == 5; }, 10'000));
    EXPECT_TRUE(shows(expected)) << testing::PrintToString(shown());
    EXPECT_EQ(pane.paths().size(), 3);

    make({u"other 1"_s, u"other 2"_s});
    asked.clear();
    judge = [&](ScriptedComponent::Run&) -> ScriptedComponent::Outcome {
        if (field.text() == u"repor"_s)
            field.setText(u"other"_s);
        return {AEDesc::ofBoolean(true)};
    };
    field.setText(u"repor"_s);
    EXPECT_TRUE(shows({u"other 1"_s, u"other 2"_s})) << "a hit of the text before: " << testing::PrintToString(shown());
    EXPECT_EQ(pane.paths().size(), 2);
}

TEST_F(SpotlightViewTest, HitsAreShownWhileTheScriptWaitsForTheNextOne) {
    make({u"report 1"_s, u"report 2"_s, u"report 3"_s});
    int asked = 0;
    QStringList shownMeanwhile;
    judge = [&](ScriptedComponent::Run&) -> ScriptedComponent::Outcome {
        if (++asked == 3) {
            EXPECT_TRUE(QTest::qWaitFor([&] { return shown().size() == 2; }, 10'000));
            shownMeanwhile = shown();
            QFile::remove(folder.filePath(shownMeanwhile.value(0)));
            EXPECT_TRUE(QTest::qWaitFor([&] { return shown().size() == 1; }, 10'000));
        }
        return {AEDesc::ofBoolean(true)};
    };
    field.setText(u"report"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return asked == 3 && pane.paths().size() == 2; }, 20'000));
    EXPECT_EQ(shownMeanwhile.size(), 2) << testing::PrintToString(shownMeanwhile);
    EXPECT_EQ(shown().size(), 2);
    EXPECT_FALSE(shown().contains(shownMeanwhile.value(0)));
}

} // namespace quoddle

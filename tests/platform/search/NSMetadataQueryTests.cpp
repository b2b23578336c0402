// SPDX-License-Identifier: MIT
// Searches in real folders: existing files, changes, and the notifications about them.
#include "platform/search/NSMetadataQuery.h"

#include "platform/foundation/NSNotificationCenter.h"
#include "platform/foundation/NSUserDefaults.h"

#include "platform/foundation/QtPrinters.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

NSPredicateRef predicate(const QString& format, const QVariantList& arguments = {}) {
    return *NSPredicate::predicateWithFormat(format, arguments);
}

NSPredicateRef named(const QString& pattern) {
    return predicate(u"kMDItemFSName LIKE[cdw] %@"_s, {pattern});
}

class NSMetadataQueryTest : public ::testing::Test {
protected:
    NSMetadataQueryTest() {
        mQuery.setSearchScopes({mFolder.path()});
        mQuery.setNotificationBatchingInterval(0.01);
        NSNotificationCenter::defaultCenter().addObserver(
            this, [this](const NSNotification& notification) { mNames << notification.name; }, {}, &mQuery);
    }
    ~NSMetadataQueryTest() override { NSNotificationCenter::defaultCenter().removeObserver(this); }

    /// Makes a file, or a folder when the name ends in a slash.
    void make(const QString& name) {
        const QString path = mFolder.filePath(name);
        QDir().mkpath(name.endsWith(u'/') ? path : path.left(path.lastIndexOf(u'/')));
        if (!name.endsWith(u'/')) {
            EXPECT_TRUE(QFile(path).open(QIODevice::WriteOnly));
        }
    }
    void rename(const QString& from, const QString& to) {
        EXPECT_EQ(::rename(QFile::encodeName(mFolder.filePath(from)), QFile::encodeName(mFolder.filePath(to))), 0);
    }
    static bool waitFor(const std::function<bool()>& condition) {
        const QDeadlineTimer deadline(20'000);
        while (!condition() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
        return condition();
    }
    QStringList results() const {
        QStringList names;
        for (qsizetype i = 0; i < mQuery.resultCount(); ++i)
            names << mQuery.resultAtIndex(i).path().mid(mFolder.path().size() + 1);
        names.sort();
        return names;
    }
    QStringList gather(const NSPredicateRef& wanted) {
        mQuery.setPredicate(wanted);
        EXPECT_TRUE(mQuery.startQuery());
        EXPECT_TRUE(waitFor([this] { return !mQuery.isGathering(); }));
        return results();
    }
    bool becomes(const QStringList& names) {
        const bool is = waitFor([&] { return results() == names; });
        EXPECT_EQ(results(), names);
        return is;
    }

    QTemporaryDir mFolder;
    NSMetadataQuery mQuery;
    QStringList mNames; // the names of the posted notifications
};

} // namespace

TEST_F(NSMetadataQueryTest, GathersWhatThePredicateAsksFor) {
    for (const char* name : {"Hello.txt", "sub/My Hello.PDF", "sub/deep/héllo.jpg", "sub/hello.png", "othello.txt", "notes.txt", "hello.d/",
                             ".hello", ".hidden/hello.txt", "sub/.git/hello"})
        make(QString::fromUtf8(name));
    const std::pair<NSPredicateRef, QStringList> rows[] = {
        {named(u"he*l*l*o*"_s),
         {u".hello"_s, u"Hello.txt"_s, u"hello.d"_s, u"sub/My Hello.PDF"_s, u"sub/deep/héllo.jpg"_s, u"sub/hello.png"_s}},
        {named(u".pdf"_s), {u"sub/My Hello.PDF"_s}},
        {predicate(u"kMDItemFSName LIKE[cdw] '*hello*' AND kMDItemContentType == 'public.png'"_s), {u"sub/hello.png"_s}},
        {predicate(u"kMDItemFSName LIKE[cdw] 'hello*' AND kMDItemContentType == 'public.folder'"_s), {u"hello.d"_s}},
        {predicate(u"(kMDItemFSName ENDSWITH '.txt' OR kMDItemFSName ENDSWITH '.d') AND kMDItemContentType != 'public.folder'"_s),
         {u"Hello.txt"_s, u"notes.txt"_s, u"othello.txt"_s}},
        {predicate(u"FALSEPREDICATE"_s), {}},
    };
    for (const auto& [wanted, names] : rows)
        EXPECT_EQ(gather(wanted), names) << wanted->predicateFormat().toStdString();
    EXPECT_EQ(gather(nullptr).size(), 10);
    EXPECT_FALSE(mQuery.startQuery()); // the query is already running
}

TEST_F(NSMetadataQueryTest, RanksByATerm) {
    const auto relevances = [this] {
        QMap<QString, double> known;
        for (qsizetype i = 0; i < mQuery.resultCount(); ++i) {
            const NSMetadataItem& item = mQuery.resultAtIndex(i);
            known[item.path().section(u'/', -1)] = item.valueForAttribute(NSMetadataQueryResultContentRelevanceAttribute).toDouble();
        }
        return known;
    };
    for (const char* name : {"Report", "é-report", "re-port", "re p o r t", "straße report", "notes"})
        make(QString::fromUtf8(name));
    mQuery.setRankedTerm(u"report"_s);
    gather(named(u"*"_s));
    // The whole term, a part of the name, a name in two pieces, and a name that only the expression can rank.
    const QMap<QString, double> wanted{
        {u"Report"_s, 1}, {u"é-report"_s, 6.0 / 8}, {u"re-port"_s, 6.0 / 7 * (1.0 / 2 * (4.0 / 6))}, {u"straße report"_s, 0}};
    EXPECT_EQ(relevances(), wanted);
    make(u"repo"_s);
    make(u"report2"_s);
    EXPECT_TRUE(waitFor([this] { return mQuery.resultCount() == 5; }));
    EXPECT_EQ(relevances().value(u"report2"_s), 6.0 / 7);
    mQuery.setRankedTerm({});
    EXPECT_FALSE(mQuery.isStarted());
    EXPECT_EQ(gather(named(u"*"_s)).size(), 8);
}

TEST_F(NSMetadataQueryTest, TellsHowItGoes) {
    make(u"a.txt"_s);
    gather(named(u"a*"_s));
    EXPECT_EQ(mNames, QStringList({NSMetadataQueryDidStartGatheringNotification, NSMetadataQueryGatheringProgressNotification,
                                   NSMetadataQueryDidFinishGatheringNotification}));
    EXPECT_TRUE(mQuery.followsChangesAtOnce());
    mNames.clear();
    make(u"b.txt"_s);
    make(u"ab.txt"_s);
    becomes({u"a.txt"_s, u"ab.txt"_s});
    EXPECT_EQ(mNames, QStringList(NSMetadataQueryDidUpdateNotification));
    mNames.clear();
    gather(predicate(u"FALSEPREDICATE"_s));
    EXPECT_EQ(mNames, QStringList({NSMetadataQueryDidStartGatheringNotification, NSMetadataQueryDidFinishGatheringNotification}));
}

TEST_F(NSMetadataQueryTest, TellsWhatHasComeAndGone) {
    make(u"a1.txt"_s);
    QStringList added, removed;
    NSNotificationCenter::defaultCenter().addObserver(
        this,
        [&](const NSNotification& notification) {
            const auto items = notification.userInfo.value(NSMetadataQueryUpdateAddedItemsKey).value<QList<NSMetadataItem>>();
            for (const NSMetadataItem& item : items)
                added << item.path();
            removed += notification.userInfo.value(NSMetadataQueryUpdateRemovedItemsKey).toStringList();
        },
        {}, &mQuery);
    gather(named(u"a*"_s));
    rename(u"a1.txt"_s, u"a2.txt"_s);
    becomes({u"a2.txt"_s});
    EXPECT_EQ(added, QStringList({mFolder.filePath(u"a1.txt"_s), mFolder.filePath(u"a2.txt"_s)}));
    EXPECT_EQ(removed, QStringList(mFolder.filePath(u"a1.txt"_s)));
}

TEST_F(NSMetadataQueryTest, FollowsFilesAndFolders) {
    make(u"in/hello"_s);
    make(u"empty/"_s);
    gather(named(u"*hello*"_s));
    make(u"new/deeper/still/hello 2"_s);
    ASSERT_TRUE(becomes({u"in/hello"_s, u"new/deeper/still/hello 2"_s}));
    make(u"new/deeper/hello 3"_s);
    rename(u"new"_s, u"in/moved"_s);
    ASSERT_TRUE(becomes({u"in/hello"_s, u"in/moved/deeper/hello 3"_s, u"in/moved/deeper/still/hello 2"_s}));
    make(u"in/moved/deeper/still/hello 4"_s);
    rename(u"in/hello"_s, u"in/good bye"_s);
    ASSERT_TRUE(becomes({u"in/moved/deeper/hello 3"_s, u"in/moved/deeper/still/hello 2"_s, u"in/moved/deeper/still/hello 4"_s}));
    rename(u"in/moved/deeper"_s, u"empty"_s); // replaces the empty folder
    ASSERT_TRUE(becomes({u"empty/hello 3"_s, u"empty/still/hello 2"_s, u"empty/still/hello 4"_s}));
    rename(u"empty"_s, u".hidden"_s);
    ASSERT_TRUE(becomes({}));
    rename(u".hidden"_s, u"shown"_s);
    ASSERT_TRUE(becomes({u"shown/hello 3"_s, u"shown/still/hello 2"_s, u"shown/still/hello 4"_s}));
    EXPECT_TRUE(QDir(mFolder.filePath(u"shown"_s)).removeRecursively());
    ASSERT_TRUE(becomes({}));
    make(u"shown/hello"_s);
    ASSERT_TRUE(becomes({u"shown/hello"_s}));
    EXPECT_EQ(gather(named(u"*hello*"_s)), QStringList(u"shown/hello"_s)); // a later search also has the changes
}

TEST_F(NSMetadataQueryTest, StoppedItIsSilent) {
    for (int i = 0; i < 500; ++i)
        make(u"hello %1"_s.arg(i));
    gather(named(u"hello*"_s));
    make(u"hello new"_s);
    mQuery.setPredicate(named(u"none*"_s));
    EXPECT_EQ(mQuery.resultCount(), 500);
    mNames.clear();
    mQuery.startQuery();
    mQuery.setPredicate(named(u"hello*"_s)); // before any result can have arrived
    mQuery.startQuery();
    // When an observer stops the query in a notification, no further one is posted.
    const int observer = 0;
    NSNotificationCenter::defaultCenter().addObserver(
        &observer, [this](const NSNotification&) { mQuery.stopQuery(); }, NSMetadataQueryGatheringProgressNotification, &mQuery);
    EXPECT_TRUE(waitFor([this] { return !mQuery.isStarted(); }));
    NSNotificationCenter::defaultCenter().removeObserver(&observer);
    EXPECT_LT(mQuery.resultCount(), 500);
    EXPECT_EQ(gather(named(u"none*"_s)), QStringList());
    EXPECT_EQ(mNames.filter(u"Progress"_s).size(), 1);
    EXPECT_EQ(mNames.filter(u"FinishGathering"_s).size(), 1);
}

TEST_F(NSMetadataQueryTest, AnObserverMayEndIt) {
    make(u"hello"_s);
    for (const QString& when : {NSMetadataQueryDidStartGatheringNotification, NSMetadataQueryGatheringProgressNotification,
                                NSMetadataQueryDidFinishGatheringNotification}) {
        auto query = std::make_unique<NSMetadataQuery>();
        query->setSearchScopes({mFolder.path()});
        NSNotificationCenter::defaultCenter().addObserver(
            &query, [&query](const NSNotification&) { query.reset(); }, when, query.get());
        query->startQuery();
        EXPECT_TRUE(waitFor([&query] { return !query; })) << when.toStdString();
        NSNotificationCenter::defaultCenter().removeObserver(&query);
    }
}

TEST_F(NSMetadataQueryTest, TellsNoMoreAtATimeThanObserversCanTake) {
    for (int i = 0; i < 60; ++i)
        make(u"hello %1"_s.arg(i));
    qsizetype known = 0, most = 0;
    NSNotificationCenter::defaultCenter().addObserver(
        this,
        [&](const NSNotification&) {
            const qsizetype count = mQuery.resultCount() - std::exchange(known, mQuery.resultCount());
            most = std::max(most, count);
            const QDeadlineTimer work(2 * count);
            while (!work.hasExpired()) {
            }
        },
        NSMetadataQueryGatheringProgressNotification, &mQuery);
    gather(named(u"hello*"_s));
    EXPECT_EQ(known, 60);
    EXPECT_LE(most, 8);
}

TEST_F(NSMetadataQueryTest, HostileFolders) {
    make(u"a/b/hello"_s);
    EXPECT_EQ(symlink("..", QFile::encodeName(mFolder.filePath(u"a/b/hello loop"_s))), 0);
    EXPECT_EQ(symlink("/", QFile::encodeName(mFolder.filePath(u"hello root"_s))), 0);
    EXPECT_EQ(mkfifo(QFile::encodeName(mFolder.filePath(u"hello pipe"_s)), 0600), 0);
    const QByteArray folder = QFile::encodeName(mFolder.path());
    EXPECT_EQ(mkdir(folder + "/hello \xFF\xC0", 0700), 0);
    EXPECT_TRUE(QFile(mFolder.filePath(u"hello\nline"_s)).open(QIODevice::WriteOnly));
    // The folders are nested so deeply that their paths are longer than the system allows.
    const QByteArray part(250, 'x');
    const int start = open(".", O_RDONLY | O_DIRECTORY);
    EXPECT_EQ(chdir(folder), 0);
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(mkdir(part, 0700), 0);
        EXPECT_EQ(chdir(part), 0);
    }
    EXPECT_EQ(gather(predicate(u"kMDItemFSName LIKE[cdw] 'hello*' AND kMDItemContentType != 'public.folder'"_s)),
              QStringList({u"a/b/hello"_s, u"a/b/hello loop"_s, u"hello\nline"_s, u"hello pipe"_s, u"hello root"_s}));
    EXPECT_GE(gather(named(u"xx*"_s)).size(), 10);
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(chdir(".."), 0);
        EXPECT_EQ(rmdir(part), 0);
    }
    EXPECT_EQ(fchdir(start), 0);
    close(start);
    EXPECT_TRUE(becomes({}));
    EXPECT_EQ(rmdir(folder + "/hello \xFF\xC0"), 0);
}

TEST_F(NSMetadataQueryTest, ScopesThatAreNotThere) {
    make(u"in/hello"_s);
    mQuery.setSearchScopes({mFolder.filePath(u"none"_s), u"relative"_s, mFolder.path(), mFolder.filePath(u"in"_s)});
    EXPECT_EQ(gather(named(u"hello"_s)), QStringList(u"in/hello"_s)); // found once only
    mQuery.setSearchScopes({mFolder.filePath(u"in"_s)});
    EXPECT_EQ(gather(named(u"hello"_s)), QStringList(u"in/hello"_s));
    rename(u"in"_s, u"out"_s);
    EXPECT_TRUE(becomes({}));
    make(u"in/hello 2"_s);
    EXPECT_EQ(gather(named(u"hello"_s)), QStringList(u"in/hello 2"_s));
}

TEST_F(NSMetadataQueryTest, TheLocalComputerIsWhatTheUserSays) {
    make(u"in/hello"_s);
    make(u"out/hello"_s);
    standardUserDefaults().setValue(NSMetadataQueryLocalComputerScope, QStringList(mFolder.filePath(u"in"_s)));
    mQuery.setSearchScopes({NSMetadataQueryLocalComputerScope});
    EXPECT_EQ(gather(named(u"hello"_s)), QStringList(u"in/hello"_s));
    standardUserDefaults().remove(NSMetadataQueryLocalComputerScope);
}

} // namespace quoddle

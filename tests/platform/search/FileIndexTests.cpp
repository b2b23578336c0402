// SPDX-License-Identifier: MIT
// The index when the system has too few watches, when folders cannot be read, and when many changes come at once.
#include "platform/search/index/FileIndex.h"

#include "platform/foundation/QtPrinters.h"
#include "WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <set>

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

/// A search, for whose results this thread waits.
class Found {
public:
    Found(FileIndex& index, const QString& folder, const QString& format) {
        index.search({folder}, *NSPredicate::predicateWithFormat(format), {}, mFound);
    }
    ~Found() { mFound->cancel(); }

    /// Waits for the condition; false after half a minute.
    bool waitUntil(const std::function<bool()>& condition) {
        std::unique_lock lock(mMutex);
        return mChanged.wait_for(lock, std::chrono::seconds(30), [&] {
            if (std::exchange(mIsFilled, false))
                take();
            return condition();
        });
    }
    bool becomes(const std::set<QString>& wanted) {
        return waitUntil([&] { return isWhole && names == wanted; });
    }

    /// While the lock is held, the index stops at its next result.
    std::unique_lock<std::mutex> hold() { return std::unique_lock(mMutex); }

    std::set<QString> names;
    bool isWhole = false, isFollowed = true;

private:
    void take() {
        const FoundFiles::Contents contents = mFound->take();
        isWhole = contents.isWhole;
        isFollowed = contents.isFollowed;
        for (const FoundFiles::Change& change : contents.changes) {
            const QString name = change.item.path().mid(change.item.path().lastIndexOf(u'/') + 1);
            if (change.isRemoved)
                EXPECT_EQ(names.erase(name), 1u) << name.toStdString();
            else
                EXPECT_TRUE(names.insert(name).second) << name.toStdString();
        }
    }

    std::mutex mMutex;
    std::condition_variable mChanged;
    bool mIsFilled = false;
    const std::shared_ptr<FoundFiles> mFound = std::make_shared<FoundFiles>([this] {
        const std::lock_guard lock(mMutex);
        mIsFilled = true;
        mChanged.notify_all();
    });
};

class FileIndexTest : public ::testing::Test {
protected:
    void make(const QString& name) {
        QDir().mkpath(QFileInfo(mFolder.filePath(name)).path());
        EXPECT_TRUE(QFile(mFolder.filePath(name)).open(QIODevice::WriteOnly));
    }
    QTemporaryDir mFolder;
};

} // namespace

TEST_F(FileIndexTest, LooksAgainWhereThereAreNoWatches) {
    make(u"a/b/x1"_s);
    make(u"c/x2"_s);
    for (const std::size_t most : {std::size_t(0), std::size_t(2)}) {
        FileIndex index({most, std::chrono::milliseconds(20)});
        Found found(index, mFolder.path(), u"kMDItemFSName LIKE 'x*'"_s);
        ASSERT_TRUE(found.becomes({u"x1"_s, u"x2"_s}));
        EXPECT_FALSE(found.isFollowed);
        make(u"a/b/x3"_s);
        make(u"new/deep/x4"_s);
        ASSERT_TRUE(found.becomes({u"x1"_s, u"x2"_s, u"x3"_s, u"x4"_s}));
        EXPECT_TRUE(QDir(mFolder.filePath(u"new"_s)).removeRecursively());
        EXPECT_TRUE(QFile::remove(mFolder.filePath(u"c/x2"_s)));
        make(u"c/x2/x5"_s); // a folder replaces a file
        ASSERT_TRUE(found.becomes({u"x1"_s, u"x2"_s, u"x3"_s, u"x5"_s}));
        EXPECT_TRUE(QDir(mFolder.filePath(u"c/x2"_s)).removeRecursively());
        EXPECT_TRUE(QFile::remove(mFolder.filePath(u"a/b/x3"_s)));
        make(u"c/x2"_s);
        ASSERT_TRUE(found.becomes({u"x1"_s, u"x2"_s}));
    }
    FileIndex index({SIZE_MAX, std::chrono::milliseconds(20)});
    Found found(index, mFolder.path(), u"kMDItemFSName LIKE 'x*'"_s);
    ASSERT_TRUE(found.becomes({u"x1"_s, u"x2"_s}));
    EXPECT_TRUE(found.isFollowed);
}

TEST_F(FileIndexTest, TheSearchedFolderGoesAndComesBack) {
    FileIndex index({SIZE_MAX, std::chrono::hours(1), std::chrono::milliseconds(20)});
    Found found(index, mFolder.filePath(u"above/top"_s), u"kMDItemFSName LIKE 'x*'"_s);
    ASSERT_TRUE(found.becomes({}));
    make(u"above/top/below/x1"_s);
    EXPECT_TRUE(found.becomes({u"x1"_s})) << "made while it is searched";
    const auto rename = [this](const QString& from, const QString& to) {
        EXPECT_TRUE(QDir().rename(mFolder.filePath(from), mFolder.filePath(to)));
    };
    for (const QString& moved : {u"above"_s, u"above/top"_s}) {
        rename(moved, moved + u'2');
        EXPECT_TRUE(found.becomes({})) << moved.toStdString();
        rename(moved + u'2', moved);
        EXPECT_TRUE(found.becomes({u"x1"_s})) << moved.toStdString();
    }
    rename(u"above/top"_s, u"away"_s);
    make(u"above/top/x2"_s);
    EXPECT_TRUE(found.becomes({u"x2"_s})) << "another one in its place";
    EXPECT_TRUE(QDir(mFolder.filePath(u"above/top"_s)).removeRecursively());
    make(u"above/top"_s);
    EXPECT_TRUE(found.becomes({})) << "a file in its place";
}

TEST_F(FileIndexTest, HearsOfPermissions) {
    const WithoutPrivileges withoutPrivileges(mFolder.path().toStdString());
    make(u"x"_s);
    make(u"locked/deep/x1"_s);
    const auto allow = [this](const char* name, mode_t mode) { EXPECT_EQ(chmod(QFile::encodeName(mFolder.filePath(name)), mode), 0); };
    allow("locked", 0);
    FileIndex index({SIZE_MAX, std::chrono::hours(1)}); // folders are not looked at again in time
    Found found(index, mFolder.path(), u"kMDItemFSName LIKE 'x*'"_s);
    for (const auto& [folder, mode, wanted] :
         std::initializer_list<std::tuple<const char*, mode_t, std::set<QString>>>{{"locked", 0, {u"x"_s}},
                                                                                   {"locked", 0700, {u"x"_s, u"x1"_s}},
                                                                                   {"locked/deep", 0, {u"x"_s}},
                                                                                   {"locked/deep", 0500, {u"x"_s, u"x1"_s}},
                                                                                   {"", 0, {}},
                                                                                   {"", 0700, {u"x"_s, u"x1"_s}}}) {
        allow(folder, mode);
        EXPECT_TRUE(found.becomes(wanted)) << folder << ' ' << std::oct << mode;
        EXPECT_TRUE(found.isFollowed);
    }
    allow("locked/deep", 0700);
}

TEST_F(FileIndexTest, NothingIsLostWhenMoreHappensThanIsTold) {
    make(u"x"_s);
    FileIndex index;
    Found found(index, mFolder.path(), u"kMDItemFSName LIKE 'x*'"_s);
    ASSERT_TRUE(found.becomes({u"x"_s}));
    QFile limit(u"/proc/sys/fs/inotify/max_queued_events"_s);
    const int most = limit.open(QIODevice::ReadOnly) ? limit.readAll().trimmed().toInt() : 0;
    if (most == 0 || most > 200'000)
        GTEST_SKIP() << "as many changes as the system queues would take too long";
    std::set<QString> names{u"x"_s};
    {
        const auto held = found.hold();
        for (int i = 0; i < most + 3'000; ++i) {
            const QString name = u"x %1"_s.arg(i);
            make(name);
            if (i % 3 == 0)
                QFile::remove(mFolder.filePath(name));
            else
                names.insert(name);
        }
    }
    EXPECT_TRUE(found.becomes(names));
    EXPECT_TRUE(QDir(mFolder.path()).removeRecursively());
    EXPECT_TRUE(found.becomes({}));
}

} // namespace quoddle

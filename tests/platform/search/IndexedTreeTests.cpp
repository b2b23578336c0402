// SPDX-License-Identifier: MIT
// The known names must be those in the file system: after many changes, with restricted permissions, and when the system has no watches or
// descriptors left.
#include "platform/search/index/IndexSearch.h"

#include "WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include <dirent.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace quoddle {

namespace fs = std::filesystem;

namespace {

using Paths = std::set<std::string>;

/// A tree, a search for everything in it, and the loop of the index, which the test runs step by step.
class Tree {
public:
    Tree(const std::string& path, std::size_t mostWatches)
        : mWatches(mostWatches), tree(0, path, mWatches, [this](FileNames::Entry entry) { mSearch.willRemove(tree, entry); }),
          mSearch(nullptr, {}, {&tree}, mFound) {
        tree.lookAtTop();
    }

    void readSome() {
        if (tree.isReading())
            tree.readSome();
        match();
    }
    /// Whether there were any events.
    bool takeEvents() {
        bool isAny = false;
        if (!tree.isInFolder())
            mWatches.read([&](const FolderWatches::Watched& watched, const FolderWatches::Event& event) {
                isAny = true;
                EXPECT_NE(event.kind, FolderWatches::Event::Kind::lost);
                tree.takeEvent(watched.folder, event);
            });
        match();
        return isAny;
    }
    void loseEvents() {
        mWatches.read([](const FolderWatches::Watched&, const FolderWatches::Event&) {});
    }
    void settle() {
        do {
            while (tree.isReading())
                readSome();
        } while (takeEvents());
    }
    /// The paths that the search has found, after everything has been read.
    Paths found() {
        settle();
        mSearch.handOver(true);
        for (const FoundFiles::Change& change : mFound->take().changes) {
            const std::string path = change.item.path().toStdString().substr(tree.path().size() + 1);
            if (change.isRemoved)
                EXPECT_EQ(mPaths.erase(path), 1u) << path;
            else
                EXPECT_TRUE(mPaths.insert(path).second) << path;
        }
        return mPaths;
    }
    std::vector<int> watches() const {
        std::vector<int> watches;
        for (FileNames::Folder folder = 0; folder < tree.names().folderCount(); ++folder)
            watches.push_back(tree.names().watchOf(folder));
        return watches;
    }

private:
    void match() {
        while (mSearch.matchSome()) {
        }
    }

    FolderWatches mWatches;
    const std::shared_ptr<FoundFiles> mFound = std::make_shared<FoundFiles>([] {});
    Paths mPaths;

public:
    IndexedTree tree;

private:
    IndexSearch mSearch;
};

class IndexedTreeTest : public ::testing::Test {
protected:
    IndexedTreeTest() {
        std::string pattern = (fs::temp_directory_path() / "quoddle-tree-XXXXXX").string();
        top = mkdtemp(pattern.data());
        mPrivileges.emplace(top);
    }
    ~IndexedTreeTest() override {
        mPrivileges.reset();
        unlock();
        fs::remove_all(top);
    }

    std::string at(const std::string& path) const { return path.empty() ? top : top + '/' + path; }
    void make(const std::string& path) const {
        fs::create_directories(fs::path(at(path)).parent_path());
        EXPECT_TRUE(std::ofstream(at(path)).is_open()) << path;
    }
    void allow(const std::string& path, mode_t mode) const { EXPECT_EQ(chmod(at(path).c_str(), mode), 0) << path; }
    void unlock() const {
        chmod(top.c_str(), 0755);
        for (auto each = fs::recursive_directory_iterator(top); each != fs::recursive_directory_iterator(); ++each)
            if (each->symlink_status().type() == fs::file_type::directory)
                chmod(each->path().c_str(), 0755);
    }
    /// The paths below a folder that can be found, listed in the simplest way.
    Paths listing(const std::string& below = {}) const {
        Paths paths;
        DIR* const folder = opendir(at(below).c_str());
        if (!folder)
            return paths;
        while (const dirent* const item = readdir(folder)) {
            const std::string name = item->d_name;
            const bool isFolder = item->d_type == DT_DIR;
            if (name == "." || name == ".." || (isFolder && name[0] == '.'))
                continue;
            const std::string path = below.empty() ? name : below + '/' + name;
            paths.insert(path);
            if (isFolder)
                paths.merge(listing(path));
        }
        closedir(folder);
        return paths;
    }

    std::string top;

private:
    std::optional<WithoutPrivileges> mPrivileges;
};

/// Makes one random change of the kinds that users and programs make.
void changeSomething(const std::string& top, std::mt19937& random) {
    std::vector<fs::path> all{top}, folders{top};
    std::error_code error;
    for (auto each = fs::recursive_directory_iterator(top, fs::directory_options::skip_permission_denied, error);
         each != fs::recursive_directory_iterator(); each.increment(error)) {
        all.push_back(each->path());
        if (each->symlink_status(error).type() == fs::file_type::directory)
            folders.push_back(each->path());
    }
    static constexpr const char* kNames[] = {"a", "b", "c", "d", "é", ".hidden", "file.txt", "another"};
    const fs::path place = folders[random() % folders.size()] / kNames[random() % std::size(kNames)];
    const fs::path some = all.size() > 1 ? all[1 + random() % (all.size() - 1)] : place;
    switch (random() % 10) {
    case 0:
    case 1:
        std::ofstream{place};
        break;
    case 2:
    case 3:
        fs::create_directories(place / kNames[random() % std::size(kNames)], error);
        break;
    case 4:
        fs::remove(some, error);
        break;
    case 5:
        if (all.size() > 40)
            fs::remove_all(some, error);
        break;
    case 6:
    case 7:
        fs::rename(some, place, error);
        break;
    case 8: { // a link replaces a folder, or a folder anything else
        const bool wasFolder = fs::is_directory(fs::symlink_status(some, error));
        fs::remove_all(some, error);
        if (wasFolder)
            fs::create_symlink(folders[random() % folders.size()], some, error);
        else
            fs::create_directory(some, error);
        break;
    }
    default: {
        static constexpr mode_t kModes[] = {0755, 0755, 0755, 0000, 0444, 0111, 0555};
        chmod(folders[random() % folders.size()].c_str(), kModes[random() % std::size(kModes)]);
    }
    }
}

} // namespace

TEST_F(IndexedTreeTest, KnowsWhatIsThereAfterWhateverHappened) {
    for (const std::size_t mostWatches : {SIZE_MAX, std::size_t(3), std::size_t(0)})
        for (unsigned seed = 1; seed <= 6; ++seed) {
            std::mt19937 random(seed);
            const bool looksAtAll = seed % 2 == 0;
            for (int i = 0; i < 30; ++i)
                changeSomething(top, random);
            Tree tree(top, mostWatches);
            for (int step = 1; step <= 300; ++step) {
                changeSomething(top, random);
                switch (random() % 6) {
                case 0:
                    tree.takeEvents();
                    break;
                case 1:
                    tree.readSome();
                    break;
                case 2:
                    if (!tree.tree.isInFolder() && random() % 4 == 0)
                        tree.tree.lookAgain(looksAtAll);
                }
                if (step % 50 != 0)
                    continue;
                if (random() % 2 == 0) // most changes fail in locked folders
                    unlock();
                tree.settle();
                tree.tree.lookAgain(false);
                ASSERT_EQ(tree.found(), listing()) << "seed " << seed << ", step " << step << ", watches " << mostWatches;
            }
            unlock();
            for (const fs::directory_entry& each : fs::directory_iterator(top))
                fs::remove_all(each.path());
        }
}

TEST_F(IndexedTreeTest, FollowsPermissions) {
    for (const char* file : {"x", "open/x", "locked/x", "locked/in/x", "locked/in/deep/x"})
        make(file);
    const Paths outside = {"x", "open", "open/x", "locked"};
    struct Row {
        const char* folder;
        mode_t mode;
        Paths found;
    };
    const Paths names = {"x", "open", "open/x", "locked", "locked/x", "locked/in"};
    Paths all = names;
    all.insert({"locked/in/x", "locked/in/deep", "locked/in/deep/x"});
    const Row rows[] = {
        {"locked", 0000, outside}, {"locked", 0755, all},
        {"locked", 0755, all},     {"locked", 0111, outside},
        {"locked", 0444, names},   {"locked", 0000, outside},
        {"locked", 0555, all},     {"locked/in", 0000, names},
        {"locked/in", 0755, all},  {"locked", 0644, names},
        {"locked", 0755, all},     {"", 0000, {}},
        {"", 0755, all},           {"", 0444, {"x", "open", "locked"}},
        {"", 0755, all},
    };
    for (const bool isLockedAtFirst : {true, false})
        for (const std::size_t mostWatches : {SIZE_MAX, std::size_t(2), std::size_t(0)}) {
            allow("locked", isLockedAtFirst ? 0 : 0755);
            Tree tree(top, mostWatches);
            EXPECT_EQ(tree.found(), isLockedAtFirst ? outside : all);
            for (const Row& row : rows) {
                allow(row.folder, row.mode);
                if (!tree.tree.isFollowed())
                    tree.tree.lookAgain(false);
                EXPECT_EQ(tree.found(), row.found) << row.folder << ' ' << std::oct << row.mode << ", watches " << mostWatches;
                EXPECT_TRUE(tree.tree.isFollowed() || mostWatches != SIZE_MAX) << row.folder << ' ' << std::oct << row.mode;
            }
            make("locked/in/deep/new"); // a folder that was locked is watched again
            if (!tree.tree.isFollowed())
                tree.tree.lookAgain(false);
            EXPECT_TRUE(tree.found().contains("locked/in/deep/new"));
            fs::remove(at("locked/in/deep/new"));
        }
    Tree tree(top, SIZE_MAX);
    tree.settle();
    make("y"); // its event is read after the tree has noticed that the folder is locked
    allow("", 0);
    tree.tree.lookAgain(true);
    while (tree.tree.isReading())
        tree.readSome();
    EXPECT_EQ(tree.found(), Paths());
    allow("", 0755);
    EXPECT_EQ(tree.found(), listing());
}

TEST_F(IndexedTreeTest, PermissionsThatChangeWhileItIsRead) {
    make("above/locked/x");
    Tree tree(top, SIZE_MAX);
    tree.readSome();
    tree.readSome();
    allow("above", 0444);
    tree.readSome();
    allow("above", 0755); // the old permissions are back when the events are read
    EXPECT_EQ(tree.found(), listing());
}

TEST_F(IndexedTreeTest, TellsFoldersOfTheSameNameApart) {
    make("in/x");
    Tree tree(top, SIZE_MAX);
    tree.settle();
    fs::create_directory(at(".hidden"));
    fs::rename(at("in"), at(".hidden/in"));
    make("in/y");
    allow("in", 0);
    tree.loseEvents();
    tree.tree.lookAgain(true);
    EXPECT_EQ(tree.found(), Paths({"in"}));
    fs::remove_all(at(".hidden/in")); // the removed folder is not the one that the tree knows
    EXPECT_EQ(tree.found(), Paths({"in"}));
    allow("in", 0755);
    EXPECT_EQ(tree.found(), Paths({"in", "in/y"}));
}

TEST_F(IndexedTreeTest, WatchesBelowAFolderThatHasNone) {
    for (const char* file : {"a/x", "b/x", "c/x"})
        make(file);
    fs::create_directory(at(".hidden"));
    Tree tree(top, 3);
    tree.settle();
    const std::vector<int> watches = tree.watches();
    const auto unwatched = static_cast<FileNames::Folder>(std::find(watches.begin(), watches.end(), -1) - watches.begin());
    ASSERT_LT(unwatched, 4u);
    const std::string place = tree.tree.names().pathOf(unwatched), in = place + "/in";
    make(in + "/deep/x");
    tree.tree.lookAgain(false);
    tree.readSome();
    for (const std::string folder : {"a", "b", "c"}) // frees watches for the new folders
        if (folder != place)
            fs::remove_all(at(folder));
    tree.takeEvents();
    tree.settle();
    EXPECT_GE(*(tree.watches().end() - 2), 0);
    EXPECT_GE(tree.watches().back(), 0);

    make(place + "/x2"); // gives the folder another mark, so that it is read
    allow(in, 0444);
    tree.tree.lookAgain(false);
    while (tree.tree.isReading()) // before the event is read
        tree.readSome();
    EXPECT_EQ(tree.found(), listing());
    allow(in, 0755);
    EXPECT_EQ(tree.found(), listing());
    fs::rename(at(in), at(".hidden/in"));
    make(in + "/deep/y");
    tree.tree.lookAgain(false);
    EXPECT_EQ(tree.found(), listing());
}

TEST_F(IndexedTreeTest, FollowsNoLinkInPlaceOfAFolder) {
    make("in/x");
    make(".hidden/y");
    Tree tree(top, SIZE_MAX);
    tree.readSome();
    fs::remove_all(at("in"));
    fs::create_symlink(".hidden", at("in"));
    while (tree.tree.isReading())
        tree.readSome();
    EXPECT_EQ(tree.tree.names().aliveCount(), 1u);
    EXPECT_EQ(tree.found(), listing());
}

TEST_F(IndexedTreeTest, TriesAgainWhereItCouldNotRead) {
    make("in/x");
    allow("", 0);
    {
        Tree tree(top, SIZE_MAX);
        EXPECT_EQ(tree.found(), Paths());
        EXPECT_FALSE(tree.tree.isFollowed()); // no watch tells of changes of the topmost folder itself
        allow("", 0755);
        tree.tree.lookAgain(false);
        EXPECT_EQ(tree.found(), Paths({"in", "in/x"}));
        EXPECT_TRUE(tree.tree.isFollowed());
    }
    const auto allowFiles = [](rlim_t count) {
        rlimit limit;
        getrlimit(RLIMIT_NOFILE, &limit);
        const rlim_t before = std::exchange(limit.rlim_cur, count);
        setrlimit(RLIMIT_NOFILE, &limit);
        return before;
    };
    Tree known(top, SIZE_MAX), unknown(top, SIZE_MAX);
    known.settle();
    const rlim_t usual = allowFiles(0);
    EXPECT_EQ(unknown.found(), Paths());
    EXPECT_FALSE(unknown.tree.isFollowed());
    known.tree.lookAgain(true);
    EXPECT_EQ(known.found(), Paths({"in", "in/x"})); // known entries are kept when reading fails
    EXPECT_FALSE(known.tree.isFollowed());
    allowFiles(usual);
    for (Tree* const tree : {&known, &unknown}) {
        tree->tree.lookAgain(false);
        EXPECT_EQ(tree->found(), Paths({"in", "in/x"}));
        EXPECT_TRUE(tree->tree.isFollowed());
    }
}

TEST_F(IndexedTreeTest, ALookKeepsNobodyWaiting) {
    for (int i = 0; i < 20; ++i)
        make("folder " + std::to_string(i) + "/x");
    for (int i = 0; i < 1500; ++i) // needs several reads
        make("folder 10/" + std::string(200, 'x') + std::to_string(i));
    Tree tree(top, SIZE_MAX);
    tree.settle();
    const std::vector<int> watches = tree.watches();
    make("folder 3/y");
    fs::remove(at("folder 4/x"));
    tree.takeEvents();
    tree.tree.lookAgain(true);
    bool wasInFolder = false;
    for (int pieces = 0; tree.tree.isLookingAgain(); ++pieces) {
        EXPECT_FALSE(tree.tree.isWalking()); // looking again does not make searches wait
        wasInFolder = wasInFolder || tree.tree.isInFolder();
        if (pieces == 5) { // events are read between two folders
            fs::remove(at("folder 1/x"));
            fs::rename(at("folder 2"), at("folder 19/moved"));
            make("folder 18/y");
            while (tree.tree.isInFolder())
                tree.readSome();
            EXPECT_TRUE(tree.takeEvents());
            while (tree.tree.isWalking())
                tree.readSome();
        }
        tree.readSome();
    }
    EXPECT_TRUE(wasInFolder);
    EXPECT_EQ(tree.found(), listing());
    // A valid watch is kept: when all were made anew, the events of their ends could overflow the queue and start all over.
    const std::vector<int> after = tree.watches();
    EXPECT_EQ(std::vector<int>(after.begin() + 5, after.begin() + 15), std::vector<int>(watches.begin() + 5, watches.begin() + 15));
}

TEST_F(IndexedTreeTest, WhatBearsTheSameMarkIsPassedOver) {
    make("in/x");
    make("locked/x");
    const auto settle = [this] { // about two seconds, by the file system's clock
        const auto isSettled = [this](const char* folder) { return markOfFolder(at(folder)) != kUnsettled; };
        while (!isSettled("") || !isSettled("in") || !isSettled("locked"))
            usleep(50'000);
    };
    settle();
    Tree tree(top, 0);
    EXPECT_EQ(tree.found(), listing());
    tree.tree.lookAgain(false);
    tree.tree.readSome();
    EXPECT_FALSE(tree.tree.isReading());
    allow("locked", 0);
    make("in/y");
    settle();
    tree.tree.lookAgain(false);
    EXPECT_EQ(tree.found(), Paths({"in", "in/x", "in/y", "locked"}));
    allow("locked", 0755);
    tree.tree.lookAgain(false);
    EXPECT_EQ(tree.found(), listing());
}

} // namespace quoddle

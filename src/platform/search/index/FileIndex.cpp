// SPDX-License-Identifier: MIT
#include "platform/search/index/FileIndex.h"

#include "platform/foundation/NSLog.h"
#include "platform/search/index/IndexSearch.h"

#include <algorithm>
#include <thread>

#include <poll.h>
#include <sys/eventfd.h>

#include <QFile>

namespace quoddle {

namespace {

using Clock = std::chrono::steady_clock;
/// Events of many files arrive one by one; reading those of some milliseconds together takes less time.
constexpr std::chrono::milliseconds kBetweenEvents{10};

int millisecondsUntil(Clock::time_point time) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(time - Clock::now());
    return static_cast<int>(std::max<long long>(left.count() + 1, 0));
}

} // namespace

class FileIndex::Worker {
public:
    explicit Worker(const Options& options)
        : mOptions(options), mWakeUp(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), mWatches(options.mostWatches), mThread([this] { run(); }) {}

    ~Worker() {
        mIsEnding = true;
        wake();
        mThread.join();
    }

    void search(const QStringList& folders, NSPredicateRef predicate, const QString& rankedTerm, std::shared_ptr<FoundFiles> found) {
        {
            const std::lock_guard lock(mMutex);
            mRequests.push_back({folders, std::move(predicate), rankedTerm, std::move(found)});
        }
        wake();
    }

private:
    struct Request {
        QStringList folders;
        NSPredicateRef predicate;
        QString rankedTerm;
        std::shared_ptr<FoundFiles> found;
    };

    void wake() { eventfd_write(mWakeUp.number(), 1); }
    void run();
    void takeRequests();
    IndexedTree* treeFor(const QString& folder);
    bool readFolders();
    void readEvents();
    void lookAtTops();
    void lookAgain();
    void compact();
    int millisecondsToWait() const;
    void wait();
    bool isAnyTree(bool (IndexedTree::*what)() const) const;
    bool isAllFollowed() const;

    const Options mOptions;
    std::mutex mMutex;
    std::vector<Request> mRequests;
    std::atomic<bool> mIsEnding = false;
    FileDescriptor mWakeUp;

    // The members below are used only by the thread.
    FolderWatches mWatches;
    std::vector<std::unique_ptr<IndexedTree>> mTrees;
    std::vector<std::unique_ptr<IndexSearch>> mSearches;
    Clock::time_point mEventsReadAt, mHeardAt, mLookedAtTopsAt, mLookedAgainAt = Clock::now();
    bool mIsMatching = false; // whether a search has not matched all known names
    bool mHasSaidRunOut = false;

    std::thread mThread; // the last member, because the thread uses all others
};

void FileIndex::Worker::run() {
    while (!mIsEnding) {
        readEvents(); // before a search begins, because an event may concern one of its folders that has gone and come back
        takeRequests();
        std::erase_if(mSearches, [](const auto& search) { return search->isCancelled(); });
        lookAtTops();
        bool isBusy = readFolders();
        lookAgain();
        compact();
        mIsMatching = false;
        for (const auto& search : mSearches)
            mIsMatching = search->matchSome() || mIsMatching;
        isBusy = isBusy || mIsMatching || isAnyTree(&IndexedTree::isReading);
        for (const auto& search : mSearches)
            search->handOver(!isBusy);
        if (!isBusy)
            wait();
    }
}

void FileIndex::Worker::takeRequests() {
    std::vector<Request> requests;
    {
        const std::lock_guard lock(mMutex);
        requests.swap(mRequests);
    }
    for (Request& request : requests) {
        if (request.found->isCancelled())
            continue;
        std::vector<const IndexedTree*> trees;
        for (const QString& folder : request.folders) {
            IndexedTree* tree = treeFor(folder);
            tree->lookAtTop();
            if (std::find(trees.begin(), trees.end(), tree) == trees.end())
                trees.push_back(tree);
        }
        mSearches.push_back(
            std::make_unique<IndexSearch>(std::move(request.predicate), request.rankedTerm, std::move(trees), std::move(request.found)));
    }
}

IndexedTree* FileIndex::Worker::treeFor(const QString& folder) {
    std::string path = QFile::encodeName(folder).toStdString();
    while (path.ends_with('/'))
        path.pop_back();
    for (const auto& tree : mTrees)
        if (tree->path() == path)
            return tree.get();
    const std::size_t number = mTrees.size();
    const auto onRemove = [this, number](FileNames::Entry entry) {
        for (const auto& search : mSearches)
            search->willRemove(*mTrees[number], entry);
    };
    mTrees.push_back(std::make_unique<IndexedTree>(static_cast<std::uint32_t>(number), path, mWatches, onRemove));
    return mTrees.back().get();
}

/// Reads a part of a folder. False when there was nothing to read. New folders are read before searches are matched, folders that are read
/// again only when no search has names left to match.
bool FileIndex::Worker::readFolders() {
    auto reading = std::find_if(mTrees.begin(), mTrees.end(), [](const auto& tree) { return tree->isWalking(); });
    if (reading == mTrees.end() && !mIsMatching)
        reading = std::find_if(mTrees.begin(), mTrees.end(), [](const auto& tree) { return tree->isReading(); });
    if (reading == mTrees.end())
        return false;
    (*reading)->readSome();
    if (mWatches.hasRunOut() && !mHasSaidRunOut) {
        mHasSaidRunOut = true;
        const auto limit = mWatches.descriptor() < 0 ? QStringLiteral("instances") : QStringLiteral("watches");
        NSLog(QStringLiteral("search: the system has no more watches for folders (fs.inotify.max_user_%@); changes in some are seen late"),
              {limit});
    }
    return true;
}

void FileIndex::Worker::readEvents() {
    const Clock::time_point now = Clock::now();
    if (isAnyTree(&IndexedTree::isInFolder) || (isAnyTree(&IndexedTree::isReading) && now - mEventsReadAt < kBetweenEvents))
        return;
    mEventsReadAt = now;
    bool isLost = false;
    const bool isAny = mWatches.read([&](const FolderWatches::Watched& watched, const FolderWatches::Event& event) {
        if (event.kind == FolderWatches::Event::Kind::lost)
            isLost = true;
        else
            mTrees[watched.tree]->takeEvent(watched.folder, event);
    });
    mHeardAt = isAny ? now : mHeardAt;
    if (isLost)
        for (const auto& tree : mTrees)
            tree->lookAgain(true);
}

void FileIndex::Worker::lookAtTops() {
    const Clock::time_point now = Clock::now();
    if (mSearches.empty() || now - mLookedAtTopsAt < mOptions.lookAtTopsAfter)
        return;
    for (const auto& tree : mTrees)
        tree->lookAtTop();
    mLookedAtTopsAt = now;
}

void FileIndex::Worker::lookAgain() {
    const Clock::time_point now = Clock::now();
    if (isAnyTree(&IndexedTree::isLookingAgain))
        mLookedAgainAt = now; // the interval begins when looking again is done
    if (isAllFollowed() || now - mLookedAgainAt < mOptions.lookAgainAfter)
        return;
    for (const auto& tree : mTrees)
        tree->lookAgain(false);
    mLookedAgainAt = now;
}

void FileIndex::Worker::compact() {
    for (const auto& tree : mTrees) {
        if (tree->isReading() || !tree->names().isWorthCompacting())
            continue;
        for (const auto& search : mSearches)
            search->matchAll();
        tree->compact();
        for (const auto& search : mSearches)
            search->setAllMatched(*tree);
    }
}

bool FileIndex::Worker::isAnyTree(bool (IndexedTree::*what)() const) const {
    return std::any_of(mTrees.begin(), mTrees.end(), [what](const auto& tree) { return ((*tree).*what)(); });
}

bool FileIndex::Worker::isAllFollowed() const {
    return std::all_of(mTrees.begin(), mTrees.end(), [](const auto& tree) { return tree->isFollowed(); });
}

/// The time until the next check for changes of which no event tells; -1 when there is none.
int FileIndex::Worker::millisecondsToWait() const {
    Clock::time_point time = Clock::time_point::max();
    if (!mSearches.empty())
        time = mLookedAtTopsAt + mOptions.lookAtTopsAfter;
    if (!isAllFollowed())
        time = std::min(time, mLookedAgainAt + mOptions.lookAgainAfter);
    return time == Clock::time_point::max() ? -1 : millisecondsUntil(time);
}

void FileIndex::Worker::wait() {
    pollfd waited[] = {{mWakeUp.number(), POLLIN, 0}, {mWatches.descriptor(), POLLIN, 0}};
    if (poll(waited, 1, millisecondsUntil(mHeardAt + kBetweenEvents)) == 0)
        poll(waited, 2, millisecondsToWait());
    eventfd_t count;
    eventfd_read(mWakeUp.number(), &count);
}

FileIndex::FileIndex(const Options& options) : mWorker(std::make_unique<Worker>(options)) {}

FileIndex::~FileIndex() = default;

std::shared_ptr<FileIndex> FileIndex::shared() {
    static std::mutex mutex;
    static std::weak_ptr<FileIndex> index;
    const std::lock_guard lock(mutex);
    std::shared_ptr<FileIndex> held = index.lock();
    if (!held)
        index = held = std::make_shared<FileIndex>();
    return held;
}

void FileIndex::search(const QStringList& folders, NSPredicateRef predicate, const QString& rankedTerm, std::shared_ptr<FoundFiles> found) {
    mWorker->search(folders, std::move(predicate), rankedTerm, std::move(found));
}

} // namespace quoddle

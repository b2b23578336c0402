// SPDX-License-Identifier: MIT
#include "platform/search/NSMetadataQuery.h"

#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/search/index/FileIndex.h"
#include "platform/search/ResultBatches.h"
#include "platform/search/SearchScopes.h"

#include <chrono>
#include <deque>

#include <QSet>
#include <QTimer>

namespace quoddle {

namespace {

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// The combined result of several changes in order.
struct Difference {
    QList<NSMetadataItem> added;
    QSet<QString> removed;

    /// `mayGo` says that later changes may remove files that earlier ones add.
    void append(FoundFiles::Change& change, bool mayGo) {
        if (!mayGo) {
            added << std::move(change.item);
        } else if (!change.isRemoved) {
            places.insert(change.item.path(), added.size());
            added << std::move(change.item);
        } else if (const auto place = places.constFind(change.item.path()); place != places.constEnd()) {
            added[*place] = NSMetadataItem(QString()); // an empty path marks an item that has gone again
            places.erase(place);
        } else {
            removed.insert(change.item.path());
        }
    }

private:
    QHash<QString, qsizetype> places; // indexes in `added`, by path
};

} // namespace

struct NSMetadataQuery::State : std::enable_shared_from_this<State> {
    NSMetadataQuery* query = nullptr;
    NSPredicateRef predicate;
    QStringList scopes{NSMetadataQueryLocalComputerScope};
    QString rankedTerm;
    double interval = 1;

    std::vector<NSMetadataItem> results;
    bool isGathering = false, isFollowed = true;

    std::shared_ptr<FileIndex> index;       // null until the first start
    std::shared_ptr<FoundFiles> found;      // null while the query is stopped; a new object for each start
    std::deque<FoundFiles::Change> waiting; // changes that have been taken from `found` and not yet been notified
    bool isWhole = false;
    ResultBatches batches{1};
    QTimer timer;

    void start();
    void stop();
    void takeFound();
    void schedule();
    void tell();
    Difference takeSlice(std::size_t count);
    bool post(const QString& name, const QVariantMap& userInfo = {});
};

/// Posts a notification. False when an observer has stopped the query or started it anew.
bool NSMetadataQuery::State::post(const QString& name, const QVariantMap& userInfo) {
    const std::shared_ptr<FoundFiles> run = found;
    NSNotificationCenter::defaultCenter().postNotification(name, query, userInfo);
    return found == run;
}

void NSMetadataQuery::State::start() {
    const auto keepAlive = shared_from_this();
    results = {};
    isGathering = true;
    isFollowed = true;
    isWhole = false;
    batches = ResultBatches(interval);
    found = std::make_shared<FoundFiles>([weak = weak_from_this()] {
        MainThread::dispatchAsync([weak] {
            if (const std::shared_ptr<State> state = weak.lock())
                state->takeFound();
        });
    });
    if (!index)
        index = FileIndex::shared();
    index->search(foldersOfSearchScopes(scopes), predicate, rankedTerm, found);
    post(NSMetadataQueryDidStartGatheringNotification);
}

void NSMetadataQuery::State::stop() {
    if (found)
        found->cancel();
    found.reset();
    waiting.clear();
    timer.stop();
    isGathering = false;
}

void NSMetadataQuery::State::takeFound() {
    if (!found)
        return;
    FoundFiles::Contents contents = found->take();
    std::move(contents.changes.begin(), contents.changes.end(), std::back_inserter(waiting));
    isWhole = isWhole || contents.isWhole;
    isFollowed = contents.isFollowed;
    schedule();
}

void NSMetadataQuery::State::schedule() {
    const bool isFinishing = isGathering && isWhole;
    if (timer.isActive() && !isFinishing)
        return;
    if (!waiting.empty() || isFinishing)
        timer.start(static_cast<int>(batches.delay(now(), isFinishing) * 1000));
}

Difference NSMetadataQuery::State::takeSlice(std::size_t count) {
    Difference difference;
    const auto end = waiting.begin() + static_cast<std::ptrdiff_t>(count);
    const bool mayGo = std::any_of(waiting.begin(), end, [](const FoundFiles::Change& change) { return change.isRemoved; });
    for (auto change = waiting.begin(); change != end; ++change)
        difference.append(*change, mayGo);
    waiting.erase(waiting.begin(), end);
    if (mayGo)
        difference.added.removeIf([](const NSMetadataItem& item) { return item.path().isEmpty(); });
    return difference;
}

void NSMetadataQuery::State::tell() {
    const auto keepAlive = shared_from_this();
    if (const std::size_t count = batches.beginSlice(waiting.size(), results.size()); count > 0) {
        const double begin = now();
        Difference difference = takeSlice(count);
        QStringList removed;
        if (!difference.removed.isEmpty())
            std::erase_if(results, [&](const NSMetadataItem& item) {
                const bool isRemoved = difference.removed.contains(item.path());
                if (isRemoved)
                    removed << item.path();
                return isRemoved;
            });
        results.insert(results.end(), difference.added.cbegin(), difference.added.cend());
        if (!difference.added.isEmpty() || !removed.isEmpty())
            if (!post(isGathering ? NSMetadataQueryGatheringProgressNotification : NSMetadataQueryDidUpdateNotification,
                      {{NSMetadataQueryUpdateAddedItemsKey, QVariant::fromValue(difference.added)},
                       {NSMetadataQueryUpdateRemovedItemsKey, removed}}))
                return;
        const double end = now();
        batches.endSlice(count, end, end - begin);
    }
    if (isGathering && isWhole && waiting.empty()) {
        isGathering = false;
        if (!post(NSMetadataQueryDidFinishGatheringNotification))
            return;
    }
    schedule();
}

NSMetadataQuery::NSMetadataQuery() : mState(std::make_shared<State>()) {
    mState->query = this;
    mState->timer.setSingleShot(true);
    mState->timer.setTimerType(Qt::PreciseTimer);
    mState->timer.callOnTimeout([state = mState.get()] { state->tell(); });
}

NSMetadataQuery::~NSMetadataQuery() {
    mState->stop();
}

NSPredicateRef NSMetadataQuery::predicate() const {
    return mState->predicate;
}

void NSMetadataQuery::setPredicate(NSPredicateRef predicate) {
    stopQuery();
    mState->predicate = std::move(predicate);
}

QString NSMetadataQuery::rankedTerm() const {
    return mState->rankedTerm;
}

void NSMetadataQuery::setRankedTerm(const QString& term) {
    stopQuery();
    mState->rankedTerm = term;
}

QStringList NSMetadataQuery::searchScopes() const {
    return mState->scopes;
}

void NSMetadataQuery::setSearchScopes(const QStringList& scopes) {
    stopQuery();
    mState->scopes = scopes;
}

double NSMetadataQuery::notificationBatchingInterval() const {
    return mState->interval;
}

void NSMetadataQuery::setNotificationBatchingInterval(double seconds) {
    mState->interval = std::clamp(seconds, 0.0, 3600.0);
}

bool NSMetadataQuery::startQuery() {
    if (isStarted())
        return false;
    mState->start();
    return true;
}

void NSMetadataQuery::stopQuery() {
    mState->stop();
}

bool NSMetadataQuery::isStarted() const {
    return mState->found != nullptr;
}

bool NSMetadataQuery::isGathering() const {
    return mState->isGathering;
}

bool NSMetadataQuery::followsChangesAtOnce() const {
    return mState->isFollowed;
}

qsizetype NSMetadataQuery::resultCount() const {
    return static_cast<qsizetype>(mState->results.size());
}

const NSMetadataItem& NSMetadataQuery::resultAtIndex(qsizetype index) const {
    return mState->results[static_cast<std::size_t>(index)];
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
// A live search for files by a predicate on their metadata: it gathers the files that exist, then follows files that are made, renamed and
// removed. Main thread; the work is done on other threads. Notifications are posted on the main thread with the query as object.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"
#include "platform/search/NSMetadataItem.h"

#include <memory>

#include <QStringList>

namespace quoddle {

inline const QString NSMetadataQueryDidStartGatheringNotification = QStringLiteral("NSMetadataQueryDidStartGatheringNotification");
/// Posted when new results have been added behind the others; userInfo has them.
inline const QString NSMetadataQueryGatheringProgressNotification = QStringLiteral("NSMetadataQueryGatheringProgressNotification");
/// Posted when all existing files have been found; isGathering() is false from then on.
inline const QString NSMetadataQueryDidFinishGatheringNotification = QStringLiteral("NSMetadataQueryDidFinishGatheringNotification");
/// Posted after gathering when results have been added or removed; userInfo has them.
inline const QString NSMetadataQueryDidUpdateNotification = QStringLiteral("NSMetadataQueryDidUpdateNotification");

/// In the userInfo of progress and updates: the added results (QList<NSMetadataItem>) and the paths of the removed ones (QStringList), so
/// that observers need not go through all results. A file that was removed and made again is in both.
inline const QString NSMetadataQueryUpdateAddedItemsKey = QStringLiteral("kMDQueryUpdateAddedItems");
inline const QString NSMetadataQueryUpdateRemovedItemsKey = QStringLiteral("kMDQueryUpdateRemovedItems");

/// The user's home folder and the volumes that are mounted for the user, without hidden folders; or the folders that the user default of
/// this name lists. A volume that is mounted later is searched from the next start on.
inline const QString NSMetadataQueryLocalComputerScope = QStringLiteral("NSMetadataQueryLocalComputerScope");

class NSMetadataQuery {
public:
    NSMetadataQuery();
    ~NSMetadataQuery();
    NSMetadataQuery(const NSMetadataQuery&) = delete;
    NSMetadataQuery& operator=(const NSMetadataQuery&) = delete;

    /// Null finds every file. Setting it stops the query.
    NSPredicateRef predicate() const;
    void setPredicate(NSPredicateRef predicate);
    /// A term by which results are ranked, so that their observers need not do it. A file whose name does not match the term (SpreadTerm,
    /// isUsableMatch()) is no result. NSMetadataQueryResultContentRelevanceAttribute of the others is their matchRelevance(), or 0 when
    /// only the term's expression can tell; observers must then rank the file themselves and may have to drop it. Empty for no ranking, the
    /// default. Setting it stops the query.
    QString rankedTerm() const;
    void setRankedTerm(const QString& term);
    /// Absolute paths of folders, or NSMetadataQueryLocalComputerScope, the default. The names in them stay in memory as long as there is a
    /// query that has been started, so that later searches are quick. Setting them stops the query.
    QStringList searchScopes() const;
    void setSearchScopes(const QStringList& scopes);
    /// The least number of seconds between two notifications about results; 1 by default. The first results, and the rest when all files
    /// have been found, do not wait. Results that are due come in several notifications, each in a turn of the event loop of its own. A
    /// notification has as many results as observers can handle in about eight milliseconds, but at least a 32nd of the known number,
    /// because the fixed cost of each notification grows with that number.
    double notificationBatchingInterval() const;
    void setNotificationBatchingInterval(double seconds);

    /// False when the query is already running. Drops the results of an earlier run. Posts the start of gathering before it returns.
    bool startQuery();
    /// No notification is posted after this call. The results stay.
    void stopQuery();
    bool isStarted() const;
    bool isGathering() const;
    /// False when the system has too few watches for so many folders, or cannot open a folder at present. Changes in some folders are then
    /// noticed only after half a minute.
    bool followsChangesAtOnce() const;

    /// The results in the order in which they were found; each file once.
    qsizetype resultCount() const;
    const NSMetadataItem& resultAtIndex(qsizetype index) const;

private:
    struct State;
    std::shared_ptr<State> mState; // calls that post hold a second reference
};

} // namespace quoddle

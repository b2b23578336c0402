// SPDX-License-Identifier: MIT
// A live search for files by a predicate on their metadata: it gathers what is there, then follows what is made, renamed and removed.
// Main thread; the work is done on other threads. Its notifications are posted on the main thread with the query as object.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"
#include "platform/search/NSMetadataItem.h"

#include <memory>

#include <QStringList>

namespace quoddle {

inline const QString NSMetadataQueryDidStartGatheringNotification = QStringLiteral("NSMetadataQueryDidStartGatheringNotification");
/// New results have been added behind the others; userInfo tells which.
inline const QString NSMetadataQueryGatheringProgressNotification = QStringLiteral("NSMetadataQueryGatheringProgressNotification");
/// All that was there has been found; isGathering() is false from here on.
inline const QString NSMetadataQueryDidFinishGatheringNotification = QStringLiteral("NSMetadataQueryDidFinishGatheringNotification");
/// After gathering: results have come or gone; userInfo tells which.
inline const QString NSMetadataQueryDidUpdateNotification = QStringLiteral("NSMetadataQueryDidUpdateNotification");

/// In the userInfo of progress and updates: what has come (QList<NSMetadataItem>) and the paths of what has gone (QStringList). Whoever
/// follows the results by them has work for what is new alone. A file may be in both when it was removed and made again.
inline const QString NSMetadataQueryUpdateAddedItemsKey = QStringLiteral("kMDQueryUpdateAddedItems");
inline const QString NSMetadataQueryUpdateRemovedItemsKey = QStringLiteral("kMDQueryUpdateRemovedItems");

/// The home folder of the user and the volumes that are mounted for the user, without hidden folders; or the folders that the user default
/// of this name lists. A volume that is mounted later is found by the next start.
inline const QString NSMetadataQueryLocalComputerScope = QStringLiteral("NSMetadataQueryLocalComputerScope");

class NSMetadataQuery {
public:
    NSMetadataQuery();
    ~NSMetadataQuery();
    NSMetadataQuery(const NSMetadataQuery&) = delete;
    NSMetadataQuery& operator=(const NSMetadataQuery&) = delete;

    /// Null: everything. One that is set while the query runs stops it.
    NSPredicateRef predicate() const;
    void setPredicate(NSPredicateRef predicate);
    /// A term that results are ranked by, so that those who show them do not have to. A file whose name does not have the term (SpreadTerm)
    /// well enough (isUsableMatch()) is no result then; of the others NSMetadataQueryResultContentRelevanceAttribute is their
    /// matchRelevance(), or 0 where only the term's expression can tell: that is left to those who show the result, usable or not. Empty,
    /// as it is initially: no ranking. One that is set while the query runs stops it.
    QString rankedTerm() const;
    void setRankedTerm(const QString& term);
    /// Absolute paths of folders, or NSMetadataQueryLocalComputerScope. Initially the latter. The names in them stay in memory as long as
    /// there is a query that has been started, so that later searches are quick. Set while the query runs, they stop it.
    QStringList searchScopes() const;
    void setSearchScopes(const QStringList& scopes);
    /// Seconds that lie between two notifications about results at least. Initially 1. Not waited for are the first results and the rest
    /// when all has been found. What is due comes in several notifications, each in a turn of the event loop of its own, so many results at
    /// a time that those who hear it need about eight milliseconds for them, but at least a 32nd of those that are known: else what each
    /// notification costs anyway would count more the more results there are.
    double notificationBatchingInterval() const;
    void setNotificationBatchingInterval(double seconds);

    /// False when it runs already. The results of an earlier run are dropped. Posts that it gathers before it returns.
    bool startQuery();
    /// No notification comes after it. The results stay.
    void stopQuery();
    bool isStarted() const;
    bool isGathering() const;
    /// False when the system has too few watches for so many folders, or cannot open one for the moment: in some of them changes are
    /// noticed after half a minute only.
    bool followsChangesAtOnce() const;

    /// In the order in which they were found; each file once.
    qsizetype resultCount() const;
    const NSMetadataItem& resultAtIndex(qsizetype index) const;

private:
    struct State;
    std::shared_ptr<State> mState; // shared with nobody for longer than a call
};

} // namespace quoddle

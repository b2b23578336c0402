// SPDX-License-Identifier: MIT
// A live search for files by a predicate on their metadata: it gathers what is there, then follows what is made, renamed and removed.
// Main thread; the work is done on other threads. Its notifications are posted on the main thread with the query as object.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"

#include <memory>

#include <QStringList>

namespace quoddle {

// The attributes of a file that predicates may ask for and NSMetadataItem::valueForAttribute() answers.
inline const QString NSMetadataItemPathKey = QStringLiteral("kMDItemPath");
inline const QString NSMetadataItemFSNameKey = QStringLiteral("kMDItemFSName");           // the last component of the path
inline const QString NSMetadataItemContentTypeKey = QStringLiteral("kMDItemContentType"); // a uniform type identifier
inline const QString NSMetadataItemContentTypeTreeKey = QStringLiteral("kMDItemContentTypeTree");
inline const QString NSMetadataQueryResultContentRelevanceAttribute = QStringLiteral("kMDQueryResultContentRelevance");

inline const QString NSMetadataQueryDidStartGatheringNotification = QStringLiteral("NSMetadataQueryDidStartGatheringNotification");
/// New results have been added behind the others; userInfo tells which.
inline const QString NSMetadataQueryGatheringProgressNotification = QStringLiteral("NSMetadataQueryGatheringProgressNotification");
/// All that was there has been found; isGathering() is false from here on.
inline const QString NSMetadataQueryDidFinishGatheringNotification = QStringLiteral("NSMetadataQueryDidFinishGatheringNotification");
/// After gathering: results have come or gone; userInfo tells which.
inline const QString NSMetadataQueryDidUpdateNotification = QStringLiteral("NSMetadataQueryDidUpdateNotification");

/// In the userInfo of progress and updates: the paths (QStringList) of what this notification tells of. Whoever follows the results by them
/// has work for what is new alone. A file may be in both when it was removed and made again.
inline const QString NSMetadataQueryUpdateAddedItemsKey = QStringLiteral("kMDQueryUpdateAddedItems");
inline const QString NSMetadataQueryUpdateRemovedItemsKey = QStringLiteral("kMDQueryUpdateRemovedItems");

/// The home folder of the user and the volumes that are mounted for the user, without hidden folders; or the folders that the user default
/// of this name lists. A volume that is mounted later is found by the next start.
inline const QString NSMetadataQueryLocalComputerScope = QStringLiteral("NSMetadataQueryLocalComputerScope");

/// One file that was found. A small value; any thread, one at a time.
class NSMetadataItem {
public:
    explicit NSMetadataItem(QString path) : mPath(std::move(path)) {}
    const QString& path() const { return mPath; }
    /// An empty QVariant for what is not known. A type is found out when it is first asked for.
    QVariant valueForAttribute(const QString& key) const;

private:
    QString mPath; // absolute
};

class NSMetadataQuery {
public:
    NSMetadataQuery();
    ~NSMetadataQuery();
    NSMetadataQuery(const NSMetadataQuery&) = delete;
    NSMetadataQuery& operator=(const NSMetadataQuery&) = delete;

    /// Null: everything. One that is set while the query runs stops it.
    NSPredicateRef predicate() const;
    void setPredicate(NSPredicateRef predicate);
    /// Absolute paths of folders, or NSMetadataQueryLocalComputerScope. Initially the latter. The names in them stay in memory as long as
    /// there is a query that has been started, so that later searches are quick. Set while the query runs, they stop it.
    QStringList searchScopes() const;
    void setSearchScopes(const QStringList& scopes);
    /// Seconds that lie between two notifications about results at least. Initially 1. Not waited for are the first results and the rest
    /// when all has been found. What is due comes in several notifications, each in a turn of the event loop of its own, so many results at
    /// a time that those who hear it need about eight milliseconds for them.
    double notificationBatchingInterval() const;
    void setNotificationBatchingInterval(double seconds);

    /// False when it runs already. The results of an earlier run are dropped. Posts that it gathers before it returns.
    bool startQuery();
    /// No notification comes after it. The results stay.
    void stopQuery();
    bool isStarted() const;
    bool isGathering() const;
    /// False when the system has too few watches for so many folders: in some of them changes are noticed after half a minute only.
    bool followsChangesAtOnce() const;

    /// In the order in which they were found; each file once.
    qsizetype resultCount() const;
    const NSMetadataItem& resultAtIndex(qsizetype index) const;

private:
    struct State;
    std::shared_ptr<State> mState; // shared with nobody for longer than a call
};

} // namespace quoddle

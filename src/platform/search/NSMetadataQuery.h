// SPDX-License-Identifier: MIT
// A live search for files by a predicate on their metadata: it gathers what is there, then follows what is made, renamed and removed.
// Main thread; the work is done on other threads. Its notifications are posted on the main thread with the query as object.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"

#include <memory>

#include <QStringList>

namespace quoddle {

// What a predicate may ask about a file, and NSMetadataItem::valueForAttribute() tells.
inline const QString NSMetadataItemPathKey = QStringLiteral("kMDItemPath");
inline const QString NSMetadataItemFSNameKey = QStringLiteral("kMDItemFSName");           // the last component of the path
inline const QString NSMetadataItemContentTypeKey = QStringLiteral("kMDItemContentType"); // a uniform type identifier
inline const QString NSMetadataItemContentTypeTreeKey = QStringLiteral("kMDItemContentTypeTree");
inline const QString NSMetadataQueryResultContentRelevanceAttribute = QStringLiteral("kMDQueryResultContentRelevance");

inline const QString NSMetadataQueryDidStartGatheringNotification = QStringLiteral("NSMetadataQueryDidStartGatheringNotification");
/// New results have been added behind the others.
inline const QString NSMetadataQueryGatheringProgressNotification = QStringLiteral("NSMetadataQueryGatheringProgressNotification");
/// All that was there has been found; isGathering() is false from here on.
inline const QString NSMetadataQueryDidFinishGatheringNotification = QStringLiteral("NSMetadataQueryDidFinishGatheringNotification");
/// After gathering: results have come or gone.
inline const QString NSMetadataQueryDidUpdateNotification = QStringLiteral("NSMetadataQueryDidUpdateNotification");

/// The home folder of the user and the volumes that are mounted for the user, without hidden folders.
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

    /// Null: everything. To set one while the query runs is not allowed: it is stopped first.
    NSPredicateRef predicate() const;
    void setPredicate(NSPredicateRef predicate);
    /// Absolute paths of folders, or NSMetadataQueryLocalComputerScope. Initially the latter.
    QStringList searchScopes() const;
    void setSearchScopes(const QStringList& scopes);
    /// Seconds that lie between two notifications about results at least, the first one aside. Initially 1. A notification brings so many
    /// results at a time that those who hear it need a few milliseconds for them.
    double notificationBatchingInterval() const;
    void setNotificationBatchingInterval(double seconds);

    /// False when it runs already. The results of an earlier run are dropped.
    bool startQuery();
    /// No notification comes after it. The results stay.
    void stopQuery();
    bool isStarted() const;
    bool isGathering() const;

    /// In the order in which they were found; each file once.
    qsizetype resultCount() const;
    const NSMetadataItem& resultAtIndex(qsizetype index) const;

private:
    struct State;
    std::unique_ptr<State> mState;
};

} // namespace quoddle

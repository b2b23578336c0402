// SPDX-License-Identifier: MIT
// A file that a search has found, and its attributes.
#pragma once

#include <QString>
#include <QVariant>

namespace quoddle {

// The attributes that predicates may ask for and that NSMetadataItem::valueForAttribute() returns.
inline const QString NSMetadataItemPathKey = QStringLiteral("kMDItemPath");
inline const QString NSMetadataItemFSNameKey = QStringLiteral("kMDItemFSName");           // the last component of the path
inline const QString NSMetadataItemContentTypeKey = QStringLiteral("kMDItemContentType"); // a uniform type identifier
inline const QString NSMetadataItemContentTypeTreeKey = QStringLiteral("kMDItemContentTypeTree");
inline const QString NSMetadataQueryResultContentRelevanceAttribute = QStringLiteral("kMDQueryResultContentRelevance"); // a double

/// A found file. A small value; usable on any thread, one at a time.
class NSMetadataItem {
public:
    /// `relevance` is how well the name matches the search; 0 when it has not been ranked.
    explicit NSMetadataItem(QString path, double relevance = 0) : mPath(std::move(path)), mRelevance(relevance) {}
    const QString& path() const { return mPath; }
    /// An empty QVariant for an unknown attribute. The content type is found out when it is first asked for.
    QVariant valueForAttribute(const QString& key) const;

private:
    QString mPath; // absolute
    double mRelevance;
};

} // namespace quoddle

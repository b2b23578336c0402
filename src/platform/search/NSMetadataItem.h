// SPDX-License-Identifier: MIT
// NSMetadataItem: one file that a search has found, and what may be asked of it.
#pragma once

#include <QString>
#include <QVariant>

namespace quoddle {

// The attributes of a file that predicates may ask for and NSMetadataItem::valueForAttribute() answers.
inline const QString NSMetadataItemPathKey = QStringLiteral("kMDItemPath");
inline const QString NSMetadataItemFSNameKey = QStringLiteral("kMDItemFSName");           // the last component of the path
inline const QString NSMetadataItemContentTypeKey = QStringLiteral("kMDItemContentType"); // a uniform type identifier
inline const QString NSMetadataItemContentTypeTreeKey = QStringLiteral("kMDItemContentTypeTree");
inline const QString NSMetadataQueryResultContentRelevanceAttribute = QStringLiteral("kMDQueryResultContentRelevance"); // a double

/// One file that was found. A small value; any thread, one at a time.
class NSMetadataItem {
public:
    /// `relevance`: how well the name fits what is searched for; 0: not known.
    explicit NSMetadataItem(QString path, double relevance = 0) : mPath(std::move(path)), mRelevance(relevance) {}
    const QString& path() const { return mPath; }
    /// An empty QVariant for what is not known. A type is found out when it is first asked for.
    QVariant valueForAttribute(const QString& key) const;

private:
    QString mPath; // absolute
    double mRelevance;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// SpotlightMatch: one hit of the file search: a path, the places of the search terms in the file's name, and the rank of the hit. Expensive
// facts are worked out when they are first asked for, and kept.
// Main thread only.
#pragma once

#include "platform/preview/QLPreviewItem.h"
#include "platform/search/ranking/NameRanges.h"

#include <QString>
#include <QStringList>

namespace quoddle {

class SpotlightMatch;
using SpotlightMatchRef = std::shared_ptr<SpotlightMatch>;

class SpotlightMatch final : public QLPreviewItem {
public:
    static constexpr double kRowHeight = 35; // points

    /// `relevance` is the rank that the search has found by the contents; with 0 the name decides.
    SpotlightMatch(QString path, QStringList matchTerms, double relevance);

    const QString& path() const { return mPath; }
    const QStringList& matchTerms() const { return mMatchTerms; }
    /// Two hits on one file are equal, whatever their terms.
    bool operator==(const SpotlightMatch& other) const { return mPath == other.mPath; }
    friend size_t qHash(const SpotlightMatch& match, size_t seed = 0) { return qHash(match.mPath, seed); }

    QUrl previewItemURL() const override { return QUrl::fromLocalFile(mPath); }
    QString previewItemTitle() const override;
    double rowHeight() const { return kRowHeight; }

    /// The places of the terms in the name that file managers show. nullopt when there are several terms and none of them is in it.
    std::optional<NameRanges> matchRanges();
    /// Whether the applet takes the file and its name contains enough of the terms. May ask the script.
    bool usableMatch();
    /// The rank of the hit; higher is better. QUIRK: the places are those in the name that is shown, but the length is that of the path's
    /// last component, which may be longer; users rely on the order of results that follows.
    double relevance();

private:
    const QString mPath;
    const QStringList mMatchTerms;
    double mCachedRelevance; // 0: not worked out yet
    std::optional<NameRanges> mCachedMatchRanges;
};

} // namespace quoddle

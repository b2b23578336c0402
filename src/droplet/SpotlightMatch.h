// SPDX-License-Identifier: MIT
// SpotlightMatch: one hit of the file search: a path, where the search terms occur in the file's name, and how good that is. What costs
// something is worked out when it is first asked for, and kept.
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

    /// `relevance`: what the search has found out about the contents; 0: nothing, the name then decides.
    SpotlightMatch(QString path, QStringList matchTerms, double relevance);

    const QString& path() const { return mPath; }
    const QStringList& matchTerms() const { return mMatchTerms; }
    /// Two hits on one file are the same hit, whatever their terms.
    bool operator==(const SpotlightMatch& other) const { return mPath == other.mPath; }
    friend size_t qHash(const SpotlightMatch& match, size_t seed = 0) { return qHash(match.mPath, seed); }

    QUrl previewItemURL() const override { return QUrl::fromLocalFile(mPath); }
    QString previewItemTitle() const override;
    double rowHeight() const { return kRowHeight; }

    /// Places in the name that file managers show. Nothing when several terms are not in it at all.
    std::optional<NameRanges> matchRanges();
    /// Whether the hit is kept: the applet takes the file, and the terms are well enough in its name.
    bool usableMatch();
    /// Higher is better. Kept on purpose: the ranges are those in the name that is shown, but the length is that of the path's last
    /// component, which may be longer.
    double relevance();

private:
    const QString mPath;
    const QStringList mMatchTerms;
    double mCachedRelevance; // 0: not known
    std::optional<NameRanges> mCachedMatchRanges;
};

} // namespace quoddle

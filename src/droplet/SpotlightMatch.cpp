// SPDX-License-Identifier: MIT
#include "droplet/SpotlightMatch.h"

#include "platform/base/TextArgument.h"
#include "platform/foundation/FileTypes.h"
#include "platform/search/ranking/NameScore.h"
#include "platform/search/ranking/SpreadTerm.h"
#include "runtime/AppDelegate.h"

#include <algorithm>

namespace quoddle {

namespace {

/// The prepared form of the term. It is kept, because thousands of hits come with the same term.
SpreadTerm& spreadTerm(const QString& term) {
    static QString sTerm;
    static std::unique_ptr<SpreadTerm> sSpreadTerm;
    if (!sSpreadTerm || term != sTerm) {
        sTerm = term;
        sSpreadTerm = std::make_unique<SpreadTerm>(TextArgument(term).view());
    }
    return *sSpreadTerm;
}

TermCounts countsOf(const QStringList& terms) {
    TermCounts counts{static_cast<std::size_t>(terms.size()), 0};
    for (const QString& term : terms)
        counts.longest = std::max(counts.longest, static_cast<std::size_t>(term.size()));
    return counts;
}

} // namespace

SpotlightMatch::SpotlightMatch(QString path, QStringList matchTerms, double relevance)
    : mPath(std::move(path)), mMatchTerms(std::move(matchTerms)), mCachedRelevance(relevance) {}

QString SpotlightMatch::previewItemTitle() const {
    return displayNameOfFile(mPath);
}

std::optional<NameRanges> SpotlightMatch::matchRanges() {
    if (mCachedMatchRanges)
        return mCachedMatchRanges;
    const QString name = displayNameOfFile(mPath);
    if (mMatchTerms.size() == 1) {
        mCachedMatchRanges = spreadTerm(mMatchTerms.first()).rangesIn(TextArgument(name).view());
    } else if (!mMatchTerms.isEmpty()) {
        std::vector<std::u16string> terms;
        for (const QString& term : mMatchTerms)
            terms.push_back(term.toStdU16String());
        mCachedMatchRanges = contiguousRanges(terms, TextArgument(name).view());
    }
    return mCachedMatchRanges;
}

bool SpotlightMatch::usableMatch() {
    AppDelegate* delegate = AppDelegate::instance();
    return delegate && delegate->isFileAcceptable(mPath) && isUsableMatch(matchRanges().value_or(NameRanges()), countsOf(mMatchTerms));
}

double SpotlightMatch::relevance() {
    if (mCachedRelevance == 0) {
        const auto nameLength = static_cast<std::size_t>(mPath.size() - mPath.lastIndexOf(u'/') - 1);
        mCachedRelevance = matchRelevance(matchRanges().value_or(NameRanges()), countsOf(mMatchTerms), nameLength);
    }
    return mCachedRelevance;
}

} // namespace quoddle

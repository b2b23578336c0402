// SPDX-License-Identifier: MIT
// Ranks the names of an index by one search term: which match it well enough to be shown, and how well.
//
// Decision: anything but a plain term and a plain name is left to the observers of the search. The class knows only names, not files.
#pragma once

#include "platform/search/index/FileNames.h"
#include "platform/search/ranking/PlainName.h"
#include "platform/search/ranking/PlainTerm.h"

#include <functional>
#include <memory>

namespace quoddle {

/// Used on one thread at a time.
class NameRanking {
public:
    /// `relevance` is matchRelevance(), or 0 when the observers must rank this name. False ends the search.
    using Call = std::function<bool(FileNames::Entry entry, double relevance)>;

    /// Null for a term that is not plain.
    static std::unique_ptr<NameRanking> make(std::u16string_view term);

    /// Calls with the entries from `from` up to, not including, `to` whose names may be usable matches, in ascending order.
    void forEachUsable(const FileNames& names, FileNames::Entry from, FileNames::Entry to, const Call& call);

private:
    NameRanking(PlainTerm term, std::size_t length) : mTerm(std::move(term)), mLength(length) {}
    std::optional<double> relevanceOf(std::string_view name, bool isASCII);

    const PlainTerm mTerm;
    const std::size_t mLength; // of the term, in UTF-16 units
    PlainName mName;
    NameRanges mRanges; // kept as a buffer for the next name
};

} // namespace quoddle

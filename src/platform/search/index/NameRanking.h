// SPDX-License-Identifier: MIT
// One search term in the names of an index: which have it well enough to be shown, and how good each is.
//
// Decision: whatever takes more than a plain term and a plain name is left to those who show the hits. It knows no files, only names.
#pragma once

#include "platform/search/index/FileNames.h"
#include "platform/search/ranking/PlainName.h"
#include "platform/search/ranking/PlainTerm.h"

#include <functional>
#include <memory>

namespace quoddle {

/// One thread at a time.
class NameRanking {
public:
    /// `relevance`: see matchRelevance(); 0 when this name has to be judged by those who show it. False ends the search.
    using Call = std::function<bool(FileNames::Entry entry, double relevance)>;

    /// Null for a term that is not plain.
    static std::unique_ptr<NameRanking> make(std::u16string_view term);

    /// Calls with those of the entries `from` up to, not including, `to` whose names may be usable matches, in their order.
    void forEachUsable(const FileNames& names, FileNames::Entry from, FileNames::Entry to, const Call& call);

private:
    NameRanking(PlainTerm term, std::size_t length) : mTerm(std::move(term)), mLength(length) {}
    std::optional<double> relevanceOf(std::string_view name, bool isASCII);

    const PlainTerm mTerm;
    const std::size_t mLength; // of the term, UTF-16 units
    PlainName mName;
    NameRanges mRanges; // of the last name
};

} // namespace quoddle

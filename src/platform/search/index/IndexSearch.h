// SPDX-License-Identifier: MIT
// One search in indexed trees: how far each tree has been matched, and which files have been found but not handed over. The index's thread.
#pragma once

#include "platform/search/index/FoundFiles.h"
#include "platform/search/index/IndexedTree.h"
#include "platform/search/index/NameMatcher.h"
#include "platform/search/index/NameRanking.h"

#include <chrono>
#include <cstdint>
#include <memory>

namespace quoddle {

class IndexSearch {
public:
    /// The trees must outlive the search. For `rankedTerm` see NSMetadataQuery::setRankedTerm().
    IndexSearch(NSPredicateRef predicate, const QString& rankedTerm, std::vector<const IndexedTree*> trees,
                std::shared_ptr<FoundFiles> found);

    bool isCancelled() const { return mFound->isCancelled(); }
    /// Matches some of the names that are new since the last call, or all of them; true when there are more.
    bool matchSome() { return match(kSome); }
    void matchAll() { match(SIZE_MAX); }
    /// Must be called before an entry of the tree is removed.
    void willRemove(const IndexedTree& tree, FileNames::Entry entry);
    /// Called when all entries of the tree have got new numbers, after matchAll().
    void setAllMatched(const IndexedTree& tree);
    /// Hands over the changes when it is time. `isIdle` says that no more changes will follow soon.
    void handOver(bool isIdle);

private:
    static constexpr std::size_t kSome = 32'768;

    struct Part {
        const IndexedTree* tree;
        FileNames::Entry next = 0;
        FileNames::Folder folder = FileNames::kRemoved; // the folder of the last path that was made
        QString folderPath;                             // its path with "/" at the end
    };
    bool match(std::size_t most);
    void matchEntry(Part& part, FileNames::Entry entry, double relevance);
    NameMatcher::Answer answerFor(const FileNames& names, FileNames::Entry entry) const;
    static QString pathOf(Part& part, FileNames::Entry entry);
    bool isFollowed() const;

    const NSPredicateRef mPredicate;
    const std::unique_ptr<NameMatcher> mMatcher;
    const std::unique_ptr<NameRanking> mRanking; // null when every name is matched
    std::vector<Part> mParts;
    const std::shared_ptr<FoundFiles> mFound;

    std::vector<FoundFiles::Change> mChanges;
    bool mIsWhole = false, mHasHandedOver = false, mWasFollowed = true;
    std::chrono::steady_clock::time_point mHandedOverAt;
};

} // namespace quoddle

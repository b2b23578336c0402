// SPDX-License-Identifier: MIT
// The names of all files below the searched folders, kept in memory, and the searches in them.
//
// Decision: one thread walks, watches and matches by turns, so nothing is locked. Names are matched while the first walk goes on, and every
// later search is answered from memory. The index knows paths and predicates, and nothing of the main thread.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"
#include "platform/search/index/FoundFiles.h"

#include <chrono>
#include <cstdint>
#include <memory>

#include <QStringList>

namespace quoddle {

class FileIndex {
public:
    struct Options {
        std::size_t mostWatches = SIZE_MAX;               // in addition to the system's limit
        std::chrono::milliseconds lookAgainAfter{30'000}; // the interval of checks of folders without a watch
        std::chrono::milliseconds lookAtTopsAfter{2'000}; // the interval of checks of the searched folders themselves, during searches
    };

    explicit FileIndex(const Options& options);
    FileIndex() : FileIndex(Options()) {}
    /// Ends the thread and waits for its current step: some thousand names, or one file that it looks at.
    ~FileIndex();
    FileIndex(const FileIndex&) = delete;
    FileIndex& operator=(const FileIndex&) = delete;

    /// The index of this process; it exists as long as somebody holds it.
    static std::shared_ptr<FileIndex> shared();

    /// Searches below the folders (absolute paths). The index's thread puts the results, then the changes, into `found` until that is
    /// cancelled. A missing folder counts as empty. A null predicate finds every file. For `rankedTerm` see
    /// NSMetadataQuery::setRankedTerm().
    void search(const QStringList& folders, NSPredicateRef predicate, const QString& rankedTerm, std::shared_ptr<FoundFiles> found);

private:
    class Worker;
    std::unique_ptr<Worker> mWorker;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The names of all files below the folders that somebody searches, in memory, and the searches in them.
//
// Decision: one thread does it all, walking, watching and matching by turns, so nothing is locked; names are matched while the first walk
// goes on, and every later search is answered from memory. It knows paths and predicates, and nothing of the main thread.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"
#include "platform/search/index/FoundFiles.h"

#include <chrono>
#include <memory>

#include <QStringList>

namespace quoddle {

class FileIndex {
public:
    struct Options {
        std::size_t mostWatches = SIZE_MAX;               // beside the system's limit
        std::chrono::milliseconds lookAgainAfter{30'000}; // in folders for which there are no watches
        std::chrono::milliseconds lookAtTopsAfter{2'000}; // at the folders that are searched, while a search goes on
    };

    explicit FileIndex(const Options& options);
    FileIndex() : FileIndex(Options()) {}
    /// Ends its thread. Waits for what that is doing: some thousand names, or one file that is looked at.
    ~FileIndex();
    FileIndex(const FileIndex&) = delete;
    FileIndex& operator=(const FileIndex&) = delete;

    /// The index of this process. It is there as long as somebody holds it.
    static std::shared_ptr<FileIndex> shared();

    /// Searches below the folders (absolute paths) and puts what it finds into `found` from its own thread, then what changes, until
    /// `found` is cancelled. A folder that is not there is empty. Null: every file. `rankedTerm`: see NSMetadataQuery::setRankedTerm().
    void search(const QStringList& folders, NSPredicateRef predicate, const QString& rankedTerm, std::shared_ptr<FoundFiles> found);

private:
    class Worker;
    std::unique_ptr<Worker> mWorker;
};

} // namespace quoddle

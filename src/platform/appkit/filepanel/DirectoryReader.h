// SPDX-License-Identifier: MIT
// Reads what is in a folder, on a thread of its own, sorted by name and judged for what a panel can do with it.
// One decision: all that costs (asking the file system, comparing names, looking into files) happens here, so that who shows the result has
// nothing to do but to show it; a folder that takes long is told in growing instalments. Knows no widget.
#pragma once

#include "platform/foundation/FileTypes.h"

#include <functional>
#include <memory>
#include <vector>

#include <QString>

namespace quoddle {

/// What a panel wants to see of a folder.
struct DirectoryFilter {
    bool showsHiddenFiles = false;
    bool treatsFilePackagesAsDirectories = false;
    bool canChooseFiles = true;
    bool canChooseDirectories = false;
    /// Files that cannot be chosen are left out instead of being shown as such.
    bool leavesOutOthers = false;
    AllowedFileTypes allowedTypes;
};

struct DirectoryEntry {
    QString name;
    qint64 size = 0;          // bytes; of files
    qint64 modified = 0;      // milliseconds since 1970; 0: not known
    bool isDirectory = false; // one that can be entered; links to folders are
    bool isPackage = false;   // a folder that stands for one file
    bool isHidden = false;
    bool canBeChosen = false;
    bool operator==(const DirectoryEntry&) const = default;
};

enum class DirectoryState { reading, complete, forbidden, missing };

struct DirectoryContents {
    DirectoryState state = DirectoryState::reading;
    std::vector<DirectoryEntry> entries; // folders first, by name as people count ("file 2" before "file 10")
    bool leftOthersOut = false;          // the filter has; hidden files do not count
    bool operator==(const DirectoryContents&) const = default;
};

/// One reading at a time; a new one replaces it. Main thread.
class DirectoryReader {
public:
    using Listener = std::function<void(std::shared_ptr<const DirectoryContents>)>;
    /// Called on the main thread: some times with the state `reading`, once with another one. Never after the reader has gone.
    explicit DirectoryReader(Listener listener);
    ~DirectoryReader();

    void read(const QString& path, const DirectoryFilter& filter);
    void cancel();

private:
    struct Job;
    Listener mListener;
    std::shared_ptr<Job> mJob;
};

} // namespace quoddle

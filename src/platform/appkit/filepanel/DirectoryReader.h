// SPDX-License-Identifier: MIT
// Reads the contents of a folder on a thread of its own, sorted by name and judged for what a panel can do with each entry.
// One decision: everything expensive (asking the file system, comparing names, looking into files) happens here, so that the code that
// shows the result only shows it. A folder that takes long is told in growing instalments. Knows no widget.
#pragma once

#include "platform/foundation/FileTypes.h"

#include <functional>
#include <memory>
#include <vector>

#include <QString>

namespace quoddle {

/// Says which entries of a folder a panel shows, and which of them can be chosen.
struct DirectoryFilter {
    bool showsHiddenFiles = false;
    bool treatsFilePackagesAsDirectories = false;
    bool canChooseFiles = true;
    bool canChooseDirectories = false;
    /// Whether files that cannot be chosen are hidden instead of being shown as such.
    bool leavesOutOthers = false;
    AllowedFileTypes allowedTypes;
};

struct DirectoryEntry {
    QString name;
    qint64 size = 0;          // bytes; 0 for folders
    qint64 modified = 0;      // milliseconds since 1970; 0: not known
    bool isDirectory = false; // a folder that can be entered, or a link to one
    bool isPackage = false;   // a folder that stands for one file
    bool isHidden = false;
    bool canBeChosen = false;
    bool operator==(const DirectoryEntry&) const = default;
};

enum class DirectoryState { reading, complete, forbidden, missing };

struct DirectoryContents {
    DirectoryState state = DirectoryState::reading;
    std::vector<DirectoryEntry> entries; // folders first, by name as people count ("file 2" before "file 10")
    bool leftOthersOut = false;          // the filter has left out entries; hidden files do not count
    bool operator==(const DirectoryContents&) const = default;
};

/// Reads one folder at a time; a new reading replaces the one before. Main thread.
class DirectoryReader {
public:
    using Listener = std::function<void(std::shared_ptr<const DirectoryContents>)>;
    /// The listener is called on the main thread: some times with the state `reading`, then once with another one. Never after the reader
    /// has been destroyed.
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

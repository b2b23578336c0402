// SPDX-License-Identifier: MIT
// Holds what is read in a folder against what is known to be in it, and so finds what is new and what has gone. One thread.
//
// Decision: a folder is mostly read in the order in which it became known, so the next name that is read is compared with the next one
// that is known; only names that stand out of order are looked up.
#pragma once

#include "platform/search/index/FileNames.h"

namespace quoddle {

class FolderComparison {
public:
    /// Starts with the entries that the folder has now. `names` must last until the next begin(); only the one who compares may add
    /// entries to the folder or remove them until then.
    void begin(FileNames& names, FileNames::Folder folder);
    /// The entry of a name that was read; nothing when the name is new.
    std::optional<FileNames::Entry> take(std::string_view name);
    /// The entries that were known and have not been read.
    std::vector<FileNames::Entry> gone() const;

private:
    FileNames* mNames = nullptr;
    FileNames::Folder mFolder = FileNames::kTop;
    std::vector<FileNames::Entry> mKnown; // in rising order
    std::vector<bool> mIsThere;           // for each
    std::size_t mNext = 0;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Compares the names that are read in a folder with the known ones, and so finds new and removed ones. One thread.
//
// Decision: most folders are read in the order in which their names became known, so a name is first compared with the next known one; only
// names out of order are looked up.
#pragma once

#include "platform/search/index/FileNames.h"

namespace quoddle {

class FolderComparison {
public:
    /// Starts with the folder's present entries. `names` must live until the next begin(). Until then only the user of the comparison may
    /// add entries to the folder or remove them.
    void begin(FileNames& names, FileNames::Folder folder);
    /// The known entry of a name that was read; nullopt when the name is new.
    std::optional<FileNames::Entry> take(std::string_view name);
    /// The known entries whose names have not been read.
    std::vector<FileNames::Entry> gone() const;

private:
    FileNames* mNames = nullptr;
    FileNames::Folder mFolder = FileNames::kTop;
    std::vector<FileNames::Entry> mKnown; // in ascending order
    std::vector<bool> mIsThere;           // whether each known name has been read
    std::size_t mNext = 0;
};

} // namespace quoddle

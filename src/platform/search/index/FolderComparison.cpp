// SPDX-License-Identifier: MIT
#include "platform/search/index/FolderComparison.h"

#include <algorithm>

namespace quoddle {

void FolderComparison::begin(FileNames& names, FileNames::Folder folder) {
    mNames = &names;
    mFolder = folder;
    mKnown = names.isEmpty(folder) ? std::vector<FileNames::Entry>() : names.entriesIn(folder);
    mIsThere.assign(mKnown.size(), false);
    mNext = 0;
}

std::optional<FileNames::Entry> FolderComparison::take(std::string_view name) {
    if (mKnown.empty())
        return {};
    const bool isNext = mNext < mKnown.size() && mNames->isAlive(mKnown[mNext]) && mNames->name(mKnown[mNext]) == name;
    if (!isNext) {
        const std::optional<FileNames::Entry> found = mNames->find(mFolder, name);
        if (!found)
            return {};
        mNext = static_cast<std::size_t>(std::lower_bound(mKnown.begin(), mKnown.end(), *found) - mKnown.begin());
        if (mNext == mKnown.size() || mKnown[mNext] != *found) // the name is read twice and was new the first time
            return found;
    }
    mIsThere[mNext] = true;
    return mKnown[mNext++];
}

std::vector<FileNames::Entry> FolderComparison::gone() const {
    std::vector<FileNames::Entry> gone;
    for (std::size_t i = 0; i < mKnown.size(); ++i)
        if (!mIsThere[i])
            gone.push_back(mKnown[i]);
    return gone;
}

} // namespace quoddle

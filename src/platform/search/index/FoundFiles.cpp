// SPDX-License-Identifier: MIT
#include "platform/search/index/FoundFiles.h"

#include <iterator>

namespace quoddle {

void FoundFiles::put(std::vector<Change>& changes, bool isWhole, bool isFollowed) {
    bool wasFilled;
    {
        const std::lock_guard lock(mMutex);
        if (mContents.changes.empty())
            mContents.changes.swap(changes);
        else
            mContents.changes.insert(mContents.changes.end(), std::make_move_iterator(changes.begin()),
                                     std::make_move_iterator(changes.end()));
        mContents.isWhole = isWhole;
        mContents.isFollowed = isFollowed;
        wasFilled = std::exchange(mIsFilled, true);
    }
    changes.clear();
    if (!wasFilled)
        mOnFilled();
}

FoundFiles::Contents FoundFiles::take() {
    const std::lock_guard lock(mMutex);
    mIsFilled = false;
    Contents taken{std::move(mContents.changes), mContents.isWhole, mContents.isFollowed};
    mContents.changes.clear();
    return taken;
}

} // namespace quoddle

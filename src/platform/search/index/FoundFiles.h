// SPDX-License-Identifier: MIT
// Files that a search has found and nobody has taken yet: the way from the index's thread to the query. Thread-safe.
#pragma once

#include "platform/search/NSMetadataItem.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <vector>

namespace quoddle {

class FoundFiles {
public:
    struct Change {
        NSMetadataItem item;
        bool isRemoved; // else it has come
    };
    struct Contents {
        std::vector<Change> changes; // in the order in which they happened
        bool isWhole = false;        // all that was there when the search began has been told
        bool isFollowed = true;      // false: a part of the folders is looked at from time to time only
    };

    /// `onFilled` is called on the filling thread when there is something to take and was nothing before.
    explicit FoundFiles(std::function<void()> onFilled) : mOnFilled(std::move(onFilled)) {}

    /// Empties `changes`. The state of the search is kept until it changes.
    void put(std::vector<Change>& changes, bool isWhole, bool isFollowed);
    Contents take();

    /// Ends the search; nothing is put in any more by a thread that looks first.
    void cancel() { mIsCancelled = true; }
    bool isCancelled() const { return mIsCancelled; }

private:
    const std::function<void()> mOnFilled;
    std::mutex mMutex;
    Contents mContents;
    bool mIsFilled = false;
    std::atomic<bool> mIsCancelled = false;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The queue of found files from the index's thread to a query. Thread-safe.
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
        bool isRemoved; // removed, or else added
    };
    struct Contents {
        std::vector<Change> changes; // in the order in which they happened
        bool isWhole = false;        // whether all files that existed when the search began have been found
        bool isFollowed = true;      // false when some folders have no watch and are only checked from time to time
    };

    /// `onFilled` is called on the filling thread when the queue was empty and has changes now.
    explicit FoundFiles(std::function<void()> onFilled) : mOnFilled(std::move(onFilled)) {}

    /// Moves the changes into the queue and leaves `changes` empty. The two flags replace the earlier ones.
    void put(std::vector<Change>& changes, bool isWhole, bool isFollowed);
    Contents take();

    /// Ends the search; threads that put changes must check isCancelled() before.
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

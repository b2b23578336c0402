// SPDX-License-Identifier: MIT
// Watches many folders for names that are made, removed and renamed. One inotify instance serves all folders; one thread. Two users of this
// class may watch the same folder; the system then has a single watch for both.
#pragma once

#include "platform/base/FileDescriptor.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quoddle {

class FolderWatches {
public:
    /// A watched folder, by its tree's number and its own number in the index.
    struct Watched {
        std::uint32_t tree, folder;
        bool operator==(const Watched&) const = default;
    };
    struct Event {
        enum class Kind : std::uint8_t {
            made,
            movedIn, // may have replaced another file
            removed, // or moved away
            gone,    // the watched folder itself has been removed, and its watch with it
            access,  // the permissions or times of a folder have been set; with an empty name those of the watched folder itself
            lost,    // events of any folder have been lost, because there were too many
        };
        Kind kind;
        bool isFolder;
        std::string_view name;
    };
    using Receiver = std::function<void(const Watched& watched, const Event& event)>;

    /// `most` limits the number of watches in addition to the system's own limit.
    explicit FolderWatches(std::size_t most);

    /// The descriptor to wait for; -1 when the system has none left.
    int descriptor() const { return mQueue.number(); }
    /// Watches a folder and returns the watch's number; -1 when no more watches are available or the folder has been removed. `isTop`:
    /// links are followed, and moving the folder counts as removing it. `held` is the folder's former watch or -1. When the path still
    /// leads to the folder that it watches, it is returned; otherwise it is removed.
    int watch(const std::string& path, bool isTop, Watched watched, int held);
    void unwatch(int watch, Watched watched);
    /// Called when the folders of a tree have got new numbers.
    void renumber(std::uint32_t tree, const std::function<std::uint32_t(std::uint32_t folder)>& newNumber);
    /// Whether a watch was refused because no more were available.
    bool hasRunOut() const { return mHasRunOut; }
    /// Reads all events. False when there were none; true does not mean that the receiver was called. The receiver may watch and unwatch.
    bool read(const Receiver& receiver);

private:
    FileDescriptor mQueue;
    const std::size_t mMost;
    std::unordered_multimap<int, Watched> mWatched;
    bool mHasRunOut = false;
};

} // namespace quoddle

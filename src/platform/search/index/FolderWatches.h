// SPDX-License-Identifier: MIT
// Hears what is made, removed and renamed in many folders. One instance of the system's watching serves all; one thread.
// One folder may be watched for several users of this class, each with a number of its own: the system has one watch for both then.
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
    /// A watched folder, by the numbers that its tree and the folder have in the index.
    struct Watched {
        std::uint32_t tree, folder;
        bool operator==(const Watched&) const = default;
    };
    struct Event {
        enum class Kind : std::uint8_t {
            made,
            movedIn, // perhaps in place of another
            removed, // or moved away
            gone,    // the watched folder itself, with its watch
            access,  // the permissions or times of a folder have been set; of the watched one itself when there is no name
            lost,    // more has happened than could be told; concerns all folders
        };
        Kind kind;
        bool isFolder;
        std::string_view name;
    };
    using Receiver = std::function<void(const Watched& watched, const Event& event)>;

    /// `most`: so many watches at most, beside the system's own limit.
    explicit FolderWatches(std::size_t most);

    /// To wait on; -1 when the system has none to give.
    int descriptor() const { return mQueue.number(); }
    /// A number of the watch; -1 when there are no more to be had, or the folder is gone. `isTop`: links are followed, and it is gone as
    /// well when it is moved. `held`: the watch so far, or -1; its number is answered again when it watches what the path leads to, else
    /// it is given up.
    int watch(const std::string& path, bool isTop, Watched watched, int held);
    void unwatch(int watch, Watched watched);
    /// The numbers of the folders of a tree have changed.
    void renumber(std::uint32_t tree, const std::function<std::uint32_t(std::uint32_t folder)>& newNumber);
    /// Whether a watch was refused because there are no more.
    bool hasRunOut() const { return mHasRunOut; }
    /// Everything that has come; false when nothing has, though the receiver is not told of all. It may watch and unwatch.
    bool read(const Receiver& receiver);

private:
    FileDescriptor mQueue;
    const std::size_t mMost;
    std::unordered_multimap<int, Watched> mWatched;
    bool mHasRunOut = false;
};

} // namespace quoddle

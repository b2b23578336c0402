// SPDX-License-Identifier: MIT
#include "platform/search/index/FolderWatches.h"

#include <cerrno>
#include <vector>

#include <sys/inotify.h>

namespace quoddle {

namespace {

constexpr std::uint32_t kEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ATTRIB | IN_ONLYDIR | IN_EXCL_UNLINK;

FolderWatches::Event::Kind kindOf(std::uint32_t mask) {
    using Kind = FolderWatches::Event::Kind;
    if (mask & (IN_IGNORED | IN_UNMOUNT | IN_MOVE_SELF))
        return Kind::gone;
    if (mask & IN_ATTRIB)
        return Kind::access;
    return mask & IN_CREATE ? Kind::made : mask & IN_MOVED_TO ? Kind::movedIn : Kind::removed;
}

} // namespace

FolderWatches::FolderWatches(std::size_t most) : mQueue(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), mMost(most) {
    mHasRunOut = !mQueue.isOpen();
}

int FolderWatches::watch(const std::string& path, bool isTop, Watched watched, int held) {
    if (!mQueue.isOpen() || (held < 0 && mWatched.size() >= mMost)) {
        mHasRunOut = true;
        return -1;
    }
    const std::uint32_t special = isTop ? IN_MOVE_SELF : IN_DONT_FOLLOW;
    const int number = inotify_add_watch(mQueue.number(), path.c_str(), kEvents | IN_MASK_ADD | special);
    if (number < 0)
        mHasRunOut = mHasRunOut || errno == ENOSPC || errno == ENOMEM;
    if (held >= 0 && number == held)
        return held;
    if (held >= 0)
        unwatch(held, watched);
    if (number < 0)
        return -1;
    mWatched.emplace(number, watched);
    return number;
}

void FolderWatches::unwatch(int watch, Watched watched) {
    const auto [first, last] = mWatched.equal_range(watch);
    for (auto each = first; each != last; ++each)
        if (each->second == watched) {
            mWatched.erase(each);
            break;
        }
    if (!mWatched.contains(watch))
        inotify_rm_watch(mQueue.number(), watch);
}

void FolderWatches::renumber(std::uint32_t tree, const std::function<std::uint32_t(std::uint32_t)>& newNumber) {
    for (auto& [number, watched] : mWatched)
        if (watched.tree == tree)
            watched.folder = newNumber(watched.folder);
}

bool FolderWatches::read(const Receiver& receiver) {
    alignas(inotify_event) char buffer[64 * 1024];
    std::vector<Watched> concerned;
    for (bool isAny = false;; isAny = true) {
        const ssize_t count = ::read(mQueue.number(), buffer, sizeof buffer);
        if (count <= 0)
            return isAny;
        for (const char* at = buffer; at < buffer + count;) {
            const auto* event = reinterpret_cast<const inotify_event*>(at);
            at += sizeof(inotify_event) + event->len;
            if (event->mask & IN_Q_OVERFLOW) {
                receiver({}, {Event::Kind::lost, false, {}});
                continue;
            }
            if (event->mask & IN_ATTRIB && !(event->mask & IN_ISDIR)) // attributes of files do not matter, and change often
                continue;
            const Event told{kindOf(event->mask), bool(event->mask & IN_ISDIR),
                             event->len ? std::string_view(event->name) : std::string_view()};
            concerned.clear();
            const auto [first, last] = mWatched.equal_range(event->wd);
            for (auto each = first; each != last; ++each)
                if (!(event->mask & IN_MOVE_SELF) || each->second.folder == 0)
                    concerned.push_back(each->second);
            if (event->mask & IN_IGNORED)
                mWatched.erase(event->wd);
            for (const Watched& watched : concerned)
                receiver(watched, told);
        }
    }
}

} // namespace quoddle

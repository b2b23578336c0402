// SPDX-License-Identifier: MIT
#include "platform/applescript/component/InterpreterLock.h"

namespace quoddle::component {

void InterpreterLock::take(std::size_t depth) {
    std::unique_lock lock(mMutex);
    const std::uint64_t ticket = mNextTicket++;
    mTurn.wait(lock, [&] { return mServing == ticket; });
    mOwner = std::this_thread::get_id();
    mDepth = depth;
}

void InterpreterLock::lock() {
    {
        std::lock_guard lock(mMutex);
        if (mDepth > 0 && mOwner == std::this_thread::get_id()) {
            ++mDepth;
            return;
        }
    }
    take(1);
}

void InterpreterLock::unlock() {
    std::lock_guard lock(mMutex);
    if (--mDepth > 0)
        return;
    mOwner = {};
    ++mServing;
    mTurn.notify_all();
}

std::size_t InterpreterLock::release() {
    std::lock_guard lock(mMutex);
    const std::size_t depth = mDepth;
    mDepth = 0;
    mOwner = {};
    ++mServing;
    mTurn.notify_all();
    return depth;
}

void InterpreterLock::restore(std::size_t depth) {
    take(depth);
}

bool InterpreterLock::isHeldByThisThread() const {
    std::lock_guard lock(mMutex);
    return mDepth > 0 && mOwner == std::this_thread::get_id();
}

bool InterpreterLock::isWanted() const {
    std::lock_guard lock(mMutex);
    return mNextTicket > mServing + 1;
}

} // namespace quoddle::component

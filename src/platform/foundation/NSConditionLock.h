// SPDX-License-Identifier: MIT
// A lock with a number that says what state the guarded thing is in: a thread waits for the state it can use. Every operation is thread-safe.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace quoddle {

class NSConditionLock {
public:
    explicit NSConditionLock(int condition) : mCondition(condition) {}
    NSConditionLock(const NSConditionLock&) = delete;
    NSConditionLock& operator=(const NSConditionLock&) = delete;

    int condition() const {
        const std::lock_guard lock(mMutex);
        return mCondition;
    }
    /// Takes the lock when it is free and in that condition; waits for both.
    void lockWhenCondition(int condition) {
        std::unique_lock lock(mMutex);
        mChanged.wait(lock, [&] { return !mLocked && mCondition == condition; });
        mLocked = true;
    }
    /// False, without the lock, when that did not come about in time.
    [[nodiscard]] bool lockWhenConditionBeforeDate(int condition, std::chrono::steady_clock::time_point limit) {
        std::unique_lock lock(mMutex);
        if (!mChanged.wait_until(lock, limit, [&] { return !mLocked && mCondition == condition; }))
            return false;
        mLocked = true;
        return true;
    }
    void unlock() { unlockAs(nullptr); }
    void unlockWithCondition(int condition) { unlockAs(&condition); }

private:
    void unlockAs(const int* condition) {
        {
            const std::lock_guard lock(mMutex);
            mLocked = false;
            if (condition)
                mCondition = *condition;
        }
        mChanged.notify_all();
    }

    mutable std::mutex mMutex;
    std::condition_variable mChanged;
    int mCondition;
    bool mLocked = false;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The lock of one component instance. A thread that works on the component's values holds it; a running script gives it up around every
// callback.
//
// Decision: first come, first served. A script takes the lock again a moment after it gave it up; with an ordinary mutex, waiting threads
// would rarely get it in between.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace quoddle::component {

class InterpreterLock {
public:
    /// Takes the lock. The thread that holds it may take it again.
    void lock();
    void unlock();
    /// Gives the lock up completely, however often the thread has taken it, and answers that number for restore().
    std::size_t release();
    void restore(std::size_t depth);
    bool isHeldByThisThread() const;
    /// Whether another thread waits for the lock.
    bool isWanted() const;

private:
    void take(std::size_t depth);

    mutable std::mutex mMutex;
    std::condition_variable mTurn;
    std::uint64_t mNextTicket = 0;
    std::uint64_t mServing = 0;
    std::thread::id mOwner;
    std::size_t mDepth = 0;
};

} // namespace quoddle::component

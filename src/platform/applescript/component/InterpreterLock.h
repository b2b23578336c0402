// SPDX-License-Identifier: MIT
// The lock of one component instance. Whoever works on its values holds it; a running script gives it up around every callback.
//
// Decision: first come, first served. A script takes the lock again a moment after it gave it up, and with an ordinary mutex whoever waits would
// rarely get it in between.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace quoddle::component {

class InterpreterLock {
public:
    /// May be taken again by the thread that holds it.
    void lock();
    void unlock();
    /// Gives it up whatever the depth, which is answered, to be restored.
    std::size_t release();
    void restore(std::size_t depth);
    bool isHeldByThisThread() const;
    /// True while another thread waits.
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

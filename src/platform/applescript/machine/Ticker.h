// SPDX-License-Identifier: MIT
// Interrupts running machines every few milliseconds, so that none of them has to read the clock.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace quoddle {

class Machine;

/// One for the process; its thread rests while nothing runs. Thread-safe.
class Ticker {
public:
    static Ticker& shared();
    ~Ticker();

    void add(Machine* machine);
    /// After it returns the machine is not touched any more.
    void remove(Machine* machine);

private:
    Ticker() = default;
    void tick();

    std::mutex mMutex;
    std::condition_variable mChanged;
    std::vector<Machine*> mMachines;
    std::thread mThread;
    bool mEnding = false;
    bool mIsResting = false; // until somebody wakes the thread
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Interrupts running machines every few milliseconds, so that none of them has to read the clock.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace quoddle::machine {

class Machine;

/// One for the process; its thread rests while nothing runs. Thread-safe.
class Ticker {
public:
    static Ticker& shared();
    ~Ticker();

    void add(Machine* machine);
    /// After it returns the machine is not touched any more, unless it was added more than once. False when it was not there.
    bool remove(Machine* machine);

    /// While a script waits it needs no interruptions, and the ticker no thread.
    class Rest {
    public:
        explicit Rest(Machine* machine) : mMachine(shared().remove(machine) ? machine : nullptr) {}
        ~Rest() {
            if (mMachine)
                shared().add(mMachine);
        }
        Rest(const Rest&) = delete;
        Rest& operator=(const Rest&) = delete;

    private:
        Machine* const mMachine;
    };

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

} // namespace quoddle::machine

// SPDX-License-Identifier: MIT
// Interrupts running machines every few milliseconds, so that they need not read the clock.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace quoddle::machine {

class Machine;

/// There is one ticker for the process; its thread rests while nothing runs. Thread-safe.
class Ticker {
public:
    static Ticker& shared();
    ~Ticker();

    void add(Machine* machine);
    /// After remove() returns the ticker does not touch the machine any more, unless it was added more than once. False when the machine
    /// was not there.
    bool remove(Machine* machine);

    /// Removes a machine while its script waits: such a script needs no interruptions, and the ticker may rest.
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
    bool mIsResting = false; // the thread waits to be woken
};

} // namespace quoddle::machine

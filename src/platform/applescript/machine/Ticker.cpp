// SPDX-License-Identifier: MIT
#include "platform/applescript/machine/Ticker.h"

#include "platform/applescript/machine/Machine.h"

#include <algorithm>
#include <chrono>

namespace quoddle::machine {

namespace {

// Less than the 10 ms within which a host must be asked, because a wait can take longer than it should.
constexpr std::chrono::milliseconds kPeriod(4);
// The thread rests only after this many idle periods, so that short runs close to each other do not each wake it.
constexpr int kIdlePeriods = 50;

} // namespace

Ticker& Ticker::shared() {
    static Ticker ticker;
    return ticker;
}

Ticker::~Ticker() {
    {
        std::lock_guard lock(mMutex);
        mEnding = true;
    }
    mChanged.notify_all();
    if (mThread.joinable())
        mThread.join();
}

void Ticker::add(Machine* machine) {
    std::lock_guard lock(mMutex);
    if (!mThread.joinable())
        mThread = std::thread(&Ticker::tick, this);
    mMachines.push_back(machine);
    if (mIsResting)
        mChanged.notify_all();
}

bool Ticker::remove(Machine* machine) {
    std::lock_guard lock(mMutex);
    const auto place = std::find(mMachines.begin(), mMachines.end(), machine);
    if (place == mMachines.end())
        return false;
    mMachines.erase(place);
    return true;
}

void Ticker::tick() {
    std::unique_lock lock(mMutex);
    for (int idle = 0; !mEnding;) {
        mIsResting = mMachines.empty() && idle >= kIdlePeriods;
        if (mIsResting)
            mChanged.wait(lock);
        else
            mChanged.wait_for(lock, kPeriod);
        idle = mMachines.empty() ? idle + 1 : 0;
        for (Machine* machine : mMachines)
            machine->interrupt();
    }
}

} // namespace quoddle::machine

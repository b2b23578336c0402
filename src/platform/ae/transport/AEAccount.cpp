// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AEAccount.h"

#include "platform/ae/AEFlatten.h"

namespace quoddle {

namespace {
constexpr std::size_t kSlack = std::size_t{4} << 20;
constexpr std::size_t kAlwaysGranted = std::size_t{256} << 10; // bytes of each sender, whatever the others hold
} // namespace

std::size_t AEAccount::mostOfSender() {
    return 2 * kAEMaxSize + kSlack;
}

std::size_t AEAccount::mostOfAll() {
    return 2 * mostOfSender();
}

bool AEAccount::take(pid_t sender, std::size_t bytes) {
    const std::lock_guard lock(mMutex);
    const auto found = mHeld.find(sender);
    const std::size_t held = (found == mHeld.end() ? 0 : found->second) + bytes;
    if (held > mostOfSender() || (mHeldByAll + bytes > mostOfAll() && held > kAlwaysGranted))
        return false;
    mHeldByAll += bytes;
    mHeld[sender] = held;
    return true;
}

void AEAccount::giveBack(pid_t sender, std::size_t bytes) {
    const std::lock_guard lock(mMutex);
    mHeldByAll -= bytes;
    const auto found = mHeld.find(sender);
    found->second -= bytes;
    if (found->second == 0)
        mHeld.erase(found);
}

bool AECharge::set(std::size_t bytes) {
    if (bytes > mBytes && !mAccount->take(mSender, bytes - mBytes))
        return false;
    if (bytes < mBytes)
        mAccount->giveBack(mSender, mBytes - bytes);
    mBytes = bytes;
    return true;
}

} // namespace quoddle

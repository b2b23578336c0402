// SPDX-License-Identifier: MIT
// An account of the memory that the events and replies of each sender take in this process, with bounds: as bytes on their way, and as
// descriptors until they are answered. Private to the transport.
//
// Decision: there is a bound for each sender and one for all together, and who is beyond loses the connection. Events of ordinary size get
// through whatever others do.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <sys/types.h>
#include <unordered_map>

namespace quoddle {

/// Any thread.
class AEAccount {
public:
    static std::size_t mostOfSender(); ///< bytes: the largest event and the largest reply
    static std::size_t mostOfAll();

    /// Whether so many more may be held; if so, they count from now on.
    bool take(pid_t sender, std::size_t bytes);
    void giveBack(pid_t sender, std::size_t bytes);

private:
    std::mutex mMutex;
    std::unordered_map<pid_t, std::size_t> mHeld; // only what is not 0
    std::size_t mHeldByAll = 0;
};

/// Bytes of one sender, given back when this goes. One thread at a time.
class AECharge {
public:
    AECharge(std::shared_ptr<AEAccount> account, pid_t sender) : mAccount(std::move(account)), mSender(sender) {}
    ~AECharge() { (void)set(0); }
    AECharge(const AECharge&) = delete;
    AECharge& operator=(const AECharge&) = delete;

    /// From now on so many in all. False, with the former number still counting, when they are too many.
    bool set(std::size_t bytes);

private:
    const std::shared_ptr<AEAccount> mAccount;
    const pid_t mSender;
    std::size_t mBytes = 0;
};

} // namespace quoddle

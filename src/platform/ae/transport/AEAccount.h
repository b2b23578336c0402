// SPDX-License-Identifier: MIT
// Counts the memory that the events and replies of each sender take in this process: as bytes on their way, and as descriptors until they
// are answered. Private to the transport.
//
// Decision: there is a bound for each sender and one for all together, and a sender that exceeds a bound loses its connection. Events of
// ordinary size get through whatever other senders do.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <sys/types.h>
#include <unordered_map>

namespace quoddle {

/// All functions may be called on any thread.
class AEAccount {
public:
    static std::size_t mostOfSender(); ///< bytes; enough for the largest event and the largest reply
    static std::size_t mostOfAll();

    /// Adds bytes to the sender's account; false, and nothing added, when a bound would be exceeded.
    bool take(pid_t sender, std::size_t bytes);
    void giveBack(pid_t sender, std::size_t bytes);

private:
    std::mutex mMutex;
    std::unordered_map<pid_t, std::size_t> mHeld; // has no entries of 0 bytes
    std::size_t mHeldByAll = 0;
};

/// Bytes in one sender's account, given back by the destructor. Used by one thread at a time.
class AECharge {
public:
    AECharge(std::shared_ptr<AEAccount> account, pid_t sender) : mAccount(std::move(account)), mSender(sender) {}
    ~AECharge() { (void)set(0); }
    AECharge(const AECharge&) = delete;
    AECharge& operator=(const AECharge&) = delete;

    /// Sets the total number of bytes. False, with the former number unchanged, when a bound would be exceeded.
    bool set(std::size_t bytes);

private:
    const std::shared_ptr<AEAccount> mAccount;
    const pid_t mSender;
    std::size_t mBytes = 0;
};

} // namespace quoddle

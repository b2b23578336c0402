// SPDX-License-Identifier: MIT
// One connection of the server. The serving thread reads; any thread may write a reply. Private to the transport.
#pragma once

#include "platform/ae/AEDelivery.h"
#include "platform/ae/transport/AEAccount.h"
#include "platform/ae/transport/AEFrame.h"
#include "platform/base/FileDescriptor.h"

#include <atomic>

namespace quoddle {

class AEServerConnection : public std::enable_shared_from_this<AEServerConnection> {
public:
    /// `changed` is called on any thread when the server must look at the connection again, to write or to go on reading.
    AEServerConnection(FileDescriptor socket, pid_t sender, std::shared_ptr<AEAccount> account, std::function<void()> changed)
        : mSocket(std::move(socket)), mSender(sender), mChanged(std::move(changed)), mAccount(std::move(account)),
          mReaderCharge(mAccount, sender), mUnsentCharge(mAccount, sender) {}

    int number() const { return mSocket.number(); }
    pid_t sender() const { return mSender; }

    bool isClosed() const { return mClosed; }

    // The functions up to close() are for the serving thread.
    /// Reads what has arrived and delivers the complete events. The connection is closed afterwards when the stream has ended or is
    /// malformed. Each event holds the round until its answer has been written or the connection is closed.
    void read(const std::shared_ptr<void>& round);
    /// Writes unsent replies.
    void write();
    /// Drops the unsent replies, because the peer does not read any more.
    void dropReplies();
    bool wantsToRead() const { return mUnanswered.load() < kMaximumUnanswered && !mIsUnflattening; }
    bool wantsToWrite() const;
    bool hasReceived() const { return mHasReceived; }
    /// Whether the rest of a frame is awaited.
    bool isInsideFrame() const { return mReader.isInside() && wantsToRead(); }
    /// Whether nothing is being received, handled or sent.
    bool isIdle() const { return !mReader.isInside() && mUnanswered.load() == 0 && !mIsUnflattening && !wantsToWrite(); }
    std::chrono::steady_clock::time_point lastRead() const { return mLastRead; }
    /// Called about once a second while a frame is incomplete. True when the peer has sent next to nothing of it for ten calls.
    bool isStalledAtTick();
    /// Whether replies have been unsent since that time.
    bool isUnreadSince(std::chrono::steady_clock::time_point time) const;
    /// Closes the connection: handlers may stop working for the peer, and replies are dropped.
    void close();

private:
    // No more events are read while this many are unanswered.
    static constexpr int kMaximumUnanswered = 64;

    /// An event that is being handled.
    struct Received {
        AEFrame frame;
        std::shared_ptr<void> round;
        std::shared_ptr<AECharge> charge;
    };

    // append() and takeFrames() return false when the stream is malformed.
    bool append(std::string_view bytes);
    bool takeFrames(const std::shared_ptr<void>& round);
    bool deliver(Received received);
    bool unflatten(Received& received, AEDesc& event) const;
    bool handOn(Received received, AEDesc event);
    bool unflattenOnAnotherThread(Received received);
    void answer(Received& received, const AEDesc& reply, OSStatus status);
    void send(std::string bytes, std::shared_ptr<void> round);
    void markClosed();

    const FileDescriptor mSocket;
    const pid_t mSender;
    const std::function<void()> mChanged;
    const std::shared_ptr<AEAccount> mAccount;
    AEFrameReader mReader;
    AECharge mReaderCharge;
    std::size_t mReadSinceTick = 0;
    int mSlowTicks = 0;
    bool mIsUnflattening = false; // of a large event, for which the events behind it wait
    bool mHasReceived = false;
    std::chrono::steady_clock::time_point mLastRead = std::chrono::steady_clock::now();
    std::atomic<int> mUnanswered = 0;
    std::atomic<bool> mClosed = false;
    mutable std::mutex mMutex; // guards the members below
    std::string mUnsent;
    AECharge mUnsentCharge;
    std::vector<std::shared_ptr<void>> mUnsentRounds;
    std::chrono::steady_clock::time_point mLastWrite;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// One connection of the server. The serving thread reads; any thread may write a reply. Private to the transport.
#pragma once

#include "platform/ae/AEDelivery.h"
#include "platform/ae/transport/AEFrame.h"
#include "platform/base/FileDescriptor.h"

#include <atomic>

namespace quoddle {

class AEServerConnection : public std::enable_shared_from_this<AEServerConnection> {
public:
    /// `changed` is called, on any thread, when the server has to look at the connection again: something to write, or to read again.
    AEServerConnection(FileDescriptor socket, std::function<void()> changed) : mSocket(std::move(socket)), mChanged(std::move(changed)) {}

    int number() const { return mSocket.number(); }

    bool isClosed() const { return mClosed; }

    // The serving thread
    /// Reads what is there and hands on the events that are complete; closed afterwards when the stream has ended or makes no sense. Each
    /// event holds the round until its answer has been written, or nobody wants it any more.
    void read(const std::shared_ptr<void>& round);
    /// Writes what is waiting.
    void write();
    /// The peer reads no more.
    void dropReplies();
    bool wantsToRead() const { return mUnanswered.load() < kMaximumUnanswered && !mIsTakingApart; }
    bool wantsToWrite() const;
    bool hasReceived() const { return mHasReceived; }
    /// A frame has begun that is waited for.
    bool isInsideFrame() const { return mReader.isInside() && wantsToRead(); }
    /// So it was when something last arrived, before that time.
    bool isStalledSince(std::chrono::steady_clock::time_point time) const { return isInsideFrame() && mLastRead <= time; }
    /// Replies have been waiting since before that time.
    bool isUnreadSince(std::chrono::steady_clock::time_point time) const;
    /// The peer has gone: handlers may stop working for it, replies are dropped.
    void close();

private:
    // More are read when some of these have been answered.
    static constexpr int kMaximumUnanswered = 64;

    /// An event while it is being handled.
    struct Received {
        AEFrame frame;
        std::shared_ptr<void> round;
    };

    // These answer false when the stream makes no sense.
    bool takeFrames(const std::shared_ptr<void>& round);
    bool deliver(Received received);
    bool handOn(Received received, AEDesc event);
    void takeApartBeside(Received received);
    void answer(Received& received, const AEDesc& reply, OSStatus status);
    void send(std::string bytes, std::shared_ptr<void> round);

    const FileDescriptor mSocket;
    const std::function<void()> mChanged;
    AEFrameReader mReader;
    bool mIsTakingApart = false; // a large event; those behind it wait
    bool mHasReceived = false;
    std::chrono::steady_clock::time_point mLastRead = std::chrono::steady_clock::now();
    std::atomic<int> mUnanswered = 0;
    std::atomic<bool> mClosed = false;
    mutable std::mutex mMutex; // guards what follows
    std::string mUnsent;
    std::vector<std::shared_ptr<void>> mUnsentRounds;
    std::chrono::steady_clock::time_point mLastWrite;
};

} // namespace quoddle

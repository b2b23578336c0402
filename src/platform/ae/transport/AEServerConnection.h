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

    // The serving thread
    enum class State { Open, Closed };
    /// Reads what is there and hands on the events that are complete.
    State read();
    /// Writes what is waiting.
    State write();
    bool wantsToRead() const { return mUnanswered.load() < kMaximumUnanswered && !mIsTakingApart; }
    bool wantsToWrite() const;
    /// A frame has begun that is waited for.
    bool isInsideFrame() const { return mReader.isInside() && wantsToRead(); }
    /// So it was when something last arrived, before that time.
    bool isStalledSince(std::chrono::steady_clock::time_point time) const { return isInsideFrame() && mLastRead <= time; }
    /// The peer has gone: handlers may stop working for it, replies are dropped.
    void close();

private:
    // More are read when some of these have been answered.
    static constexpr int kMaximumUnanswered = 64;

    State takeFrames();
    State deliver(AEFrame frame);
    void takeApartBeside(AEFrame frame);
    State handOn(const AEFrame& frame, AEDesc event);
    void answer(const AEFrame& event, const AEDesc& reply, OSStatus status);
    void send(std::string bytes);

    const FileDescriptor mSocket;
    const std::function<void()> mChanged;
    AEFrameReader mReader;
    bool mIsTakingApart = false; // a large event; those behind it wait
    std::chrono::steady_clock::time_point mLastRead = std::chrono::steady_clock::now();
    std::atomic<int> mUnanswered = 0;
    std::atomic<bool> mClosed = false;
    mutable std::mutex mMutex; // guards what follows
    std::string mUnsent;
};

} // namespace quoddle

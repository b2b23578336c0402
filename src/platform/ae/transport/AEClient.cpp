// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AEClient.h"

#include "platform/ae/AEFlatten.h"
#include "platform/ae/AEMainThread.h"
#include "platform/ae/AEWaiting.h"
#include "platform/ae/transport/AEFrame.h"
#include "platform/ae/transport/AERunningApplications.h"
#include "platform/ae/transport/AERuntimeDirectory.h"
#include "platform/ae/transport/AESocket.h"
#include "platform/base/Wait.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <mutex>
#include <poll.h>
#include <sys/socket.h>
#include <thread>

namespace quoddle {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kSlice{5};      // for the main thread's events
constexpr std::chrono::milliseconds kQuickSlice{1}; // the main thread's wait for the socket before it processes events again
constexpr std::size_t kMaximumIdle = 16;            // connections that are kept open

/// Open connections that are not in use.
class IdleConnections {
public:
    static IdleConnections& shared() {
        static IdleConnections connections;
        return connections;
    }

    /// A connection to the process; not open when there is none.
    FileDescriptor take(std::int32_t processID) {
        const std::lock_guard lock(mMutex);
        while (true) {
            const auto found = std::find_if(mIdle.rbegin(), mIdle.rend(), [&](const Idle& idle) { return idle.processID == processID; });
            if (found == mIdle.rend())
                return FileDescriptor();
            FileDescriptor socket = std::move(found->socket);
            mIdle.erase(std::next(found).base());
            pollfd state{socket.number(), POLLIN | POLLRDHUP, 0};
            if (::poll(&state, 1, 0) == 0) // the connection is neither closed nor has unexpected data
                return socket;
        }
    }

    void giveBack(std::int32_t processID, FileDescriptor socket) {
        const std::lock_guard lock(mMutex);
        if (mIdle.size() == kMaximumIdle)
            mIdle.erase(mIdle.begin());
        mIdle.push_back({processID, std::move(socket)});
    }

private:
    struct Idle {
        std::int32_t processID;
        FileDescriptor socket;
    };
    std::mutex mMutex;
    std::vector<Idle> mIdle;
};

/// Sends one event and receives its reply.
class Exchange {
public:
    Exchange(FileDescriptor socket, Clock::time_point deadline, const AESendOptions& options)
        : mSocket(std::move(socket)), mDeadline(deadline), mOptions(options) {}

    OSStatus send(std::string_view bytes);
    /// Reads until the reply with this number has arrived.
    OSStatus receive(std::uint32_t id, AEFrame& frame);
    FileDescriptor detachSocket() { return std::move(mSocket); }

private:
    OSStatus waitFor(short events);

    FileDescriptor mSocket;
    const Clock::time_point mDeadline;
    const AESendOptions& mOptions;
};

OSStatus Exchange::waitFor(short events) {
    const bool isMain = AEHasMainThreadEvents();
    for (Wait wait;;) {
        if (mOptions.cancelled && mOptions.cancelled())
            return userCanceledErr;
        const auto now = Clock::now();
        if (now >= mDeadline)
            return errAETimeout;
        pollfd state{mSocket.number(), events, 0};
        const int count = wait.pause(isMain ? std::min(mDeadline, now + kQuickSlice) : mDeadline, {&state, 1});
        if (count != 0)
            return count > 0 ? noErr : connectionInvalid;
        AEProcessMainThreadEvents(kSlice);
    }
}

OSStatus Exchange::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::send(mSocket.number(), bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            if (const OSStatus status = waitFor(POLLOUT); status != noErr)
                return status;
        } else if (errno != EINTR) {
            return connectionInvalid;
        }
    }
    return noErr;
}

OSStatus Exchange::receive(std::uint32_t id, AEFrame& frame) {
    AEFrameReader reader;
    char chunk[64 << 10];
    while (true) {
        if (const OSStatus status = waitFor(POLLIN); status != noErr)
            return status;
        const ssize_t count = ::recv(mSocket.number(), chunk, sizeof chunk, MSG_DONTWAIT);
        if (count == 0 || (count < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR))
            return connectionInvalid;
        if (count < 0)
            continue;
        reader.append({chunk, static_cast<std::size_t>(count)});
        const auto complete = reader.next(frame);
        if (!complete)
            return connectionInvalid;
        if (*complete)
            return frame.kind == AEFrame::Kind::Reply && frame.id == id ? noErr : connectionInvalid;
    }
}

OSStatus exchange(std::int32_t processID, const AEDesc& event, AEDesc* reply, bool wantsReply, Clock::time_point deadline,
                  const AESendOptions& options) {
    static std::atomic<std::uint32_t> sLast = 0;
    AEFrame frame;
    frame.id = ++sLast;
    frame.flags = wantsReply ? AEFrame::kWantsReply : 0;
    if (const OSStatus status = AEFlattenDesc(event, frame.payload); status != noErr)
        return status;
    FileDescriptor socket = IdleConnections::shared().take(processID);
    if (!socket.isOpen()) {
        const auto directory = AERuntimeDirectory();
        if (!directory)
            return procNotFound;
        auto connected = connectTo(*directory, AESocketName(processID));
        if (!connected)
            return connected.error();
        socket = std::move(*connected);
    }
    // On an error the connection is closed, so that a late reply cannot be taken for that of the next event.
    Exchange exchange(std::move(socket), deadline, options);
    if (const OSStatus status = exchange.send(frame.bytes()); status != noErr)
        return status;
    OSStatus status = noErr;
    if (wantsReply) {
        const std::uint32_t id = frame.id;
        if (status = exchange.receive(id, frame); status != noErr)
            return status;
        AEDesc answered;
        if (!frame.payload.empty() && AEUnflattenDesc(frame.payload, answered) != noErr)
            return connectionInvalid;
        if (reply && answered.isAppleEvent())
            *reply = std::move(answered);
        status = frame.status;
    }
    IdleConnections::shared().giveBack(processID, exchange.detachSocket());
    return status;
}

} // namespace

OSStatus AESendToProcess(std::int32_t processID, const AEDesc& event, AEDesc* reply, AESendMode sendMode, std::int32_t timeoutInTicks,
                         const AESendOptions& options) {
    const AESendMode replyMode = sendMode & kAEReplyModes;
    const auto deadline = AEDeadlineAfter(timeoutInTicks);
    if (replyMode != kAEQueueReply)
        return exchange(processID, event, reply, replyMode == kAEWaitReply, deadline, options);
    // A queued reply arrives as an event of its own; a thread waits for it here.
    std::thread([processID, event = AENumbered(event), deadline] {
        AEDesc queued = AEEmptyReplyTo(event);
        const OSStatus status = exchange(processID, event, &queued, true, deadline, {});
        if (status != noErr && !queued.find("errn"_4cc))
            (void)queued.put("errn"_4cc, AEDesc::ofInt32(status));
        AEDispatchQueuedReply(queued);
    }).detach();
    return noErr;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AEServerConnection.h"

#include "platform/ae/AEFlatten.h"
#include "platform/ae/AEMainThread.h"
#include "platform/ae/AESendMessage.h"
#include "platform/ae/AEWaiting.h"
#include "platform/base/Wait.h"

#include <cerrno>
#include <new>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace quoddle {

namespace {

constexpr std::size_t kChunk = 64 << 10;
constexpr std::size_t kLargeEvent = 256 << 10;  // bytes; a few milliseconds of work
constexpr std::size_t kLeastPerTick = 16 << 10; // bytes of a frame; an honest sender on the same machine is thousands of times faster
constexpr int kMaximumSlowTicks = 10;

/// Frees the text's memory, which clear() need not do.
void release(std::string& text) {
    text.clear();
    text.shrink_to_fit();
}

bool isWaiting(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

} // namespace

void AEServerConnection::read(const std::shared_ptr<void>& round) {
    char chunk[kChunk];
    const ssize_t count = ::recv(number(), chunk, sizeof chunk, MSG_DONTWAIT);
    if (count < 0 && isWaiting(errno))
        return;
    if (count <= 0)
        return close();
    mLastRead = std::chrono::steady_clock::now();
    mReadSinceTick += static_cast<std::size_t>(count);
    if (!append({chunk, static_cast<std::size_t>(count)}) || !takeFrames(round) || !mReaderCharge.set(mReader.size()))
        close();
}

bool AEServerConnection::append(std::string_view bytes) {
    try {
        mReader.append(bytes);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool AEServerConnection::isStalledAtTick() {
    const bool isSlow = isInsideFrame() && std::exchange(mReadSinceTick, 0) < kLeastPerTick;
    mSlowTicks = isSlow ? mSlowTicks + 1 : 0;
    return mSlowTicks >= kMaximumSlowTicks;
}

bool AEServerConnection::takeFrames(const std::shared_ptr<void>& round) {
    while (!mIsUnflattening) {
        Received received;
        const auto complete = mReader.next(received.frame);
        if (!complete)
            return false;
        if (!*complete)
            break;
        received.round = round;
        received.charge = std::make_shared<AECharge>(mAccount, mSender);
        mSlowTicks = 0;
        if (!mReaderCharge.set(0) || !received.charge->set(received.frame.payload.size()) || !deliver(std::move(received)))
            return false;
    }
    return true;
}

bool AEServerConnection::deliver(Received received) {
    if (received.frame.kind != AEFrame::Kind::Event)
        return false;
    ++mUnanswered;
    mHasReceived = true;
    if (received.frame.payload.size() > kLargeEvent && AEHasMainThreadEvents())
        return unflattenOnAnotherThread(std::move(received));
    AEDesc event;
    return unflatten(received, event) && handOn(std::move(received), std::move(event));
}

/// Unflattens the event. A frame of small descriptors takes many times its size in memory, so the memory is charged while the descriptors
/// are made. False when the frame is malformed, or when the sender's bound or the memory is exceeded.
bool AEServerConnection::unflatten(Received& received, AEDesc& event) const {
    AECharge& charge = *received.charge;
    std::string& payload = received.frame.payload;
    const auto mayTake = [&charge, &payload](std::size_t bytes) { return charge.set(payload.size() + bytes); };
    std::size_t taken = 0;
    try {
        if (AEUnflattenDesc(payload, event, mayTake, taken) != noErr)
            return false;
    } catch (const std::bad_alloc&) {
        return false;
    }
    release(payload);
    return charge.set(taken);
}

/// Unflattens a large event on another thread, so that the main thread can go on serving its windows.
bool AEServerConnection::unflattenOnAnotherThread(Received received) {
    const auto shared = std::make_shared<Received>(std::move(received));
    mIsUnflattening = true;
    try {
        std::thread([self = shared_from_this(), shared] {
            AEDesc event;
            const bool isWhole = self->unflatten(*shared, event);
            AEPostToMainThread([self, shared, event, isWhole] {
                self->mIsUnflattening = false;
                if (self->mClosed)
                    return;
                const auto round = shared->round;
                if (!isWhole || !self->handOn(std::move(*shared), event) || !self->takeFrames(round))
                    self->close();
                self->mChanged();
            });
        }).detach();
    } catch (const std::system_error&) { // no further thread can be started
        return false;
    }
    return true;
}

bool AEServerConnection::handOn(Received received, AEDesc event) {
    if (!event.isAppleEvent())
        return false;
    // The sender's address of this process is replaced by that of the current process.
    (void)event.setAttribute("addr"_4cc, AEDesc::ofCurrentProcess());
    if (mSender != ::getpid()) // what an application sends itself by its name has no other source
        (void)event.setAttribute("esrc"_4cc, AEDesc::ofInt32(kAELocalProcess));
    auto& manager = NSAppleEventManager::sharedAppleEventManager();
    const AEDesc reply = received.frame.flags & AEFrame::kWantsReply ? AEEmptyReplyTo(event) : AEDesc();
    if (!manager.hasEventHandlerForEventClass(event.eventClass(), event.eventID())) {
        AEDesc failed = reply;
        if (failed.isAppleEvent())
            (void)failed.put("errn"_4cc, AEDesc::ofInt32(errAEEventNotHandled));
        answer(received, failed, errAEEventNotHandled);
        return true;
    }
    const auto self = shared_from_this();
    AEHandlerContext context;
    context.cancelled = [self] { return self->mClosed.load(); };
    auto delivery = std::make_shared<AEDelivery>(
        event, reply, std::move(context),
        [self, received = std::move(received)](const AEDesc& answered) mutable { self->answer(received, answered, noErr); });
    AEDeliverer::deliver(manager, delivery);
    return true;
}

void AEServerConnection::answer(Received& received, const AEDesc& reply, OSStatus status) {
    const bool wasFull = mUnanswered.fetch_sub(1) == kMaximumUnanswered;
    const auto round = std::move(received.round);
    received.charge.reset();
    if (received.frame.flags & AEFrame::kWantsReply && !mClosed) {
        AEFrame frame;
        frame.kind = AEFrame::Kind::Reply;
        frame.id = received.frame.id;
        frame.status = status;
        try {
            if (const OSStatus flattened = AEFlattenDesc(reply, frame.payload); flattened != noErr)
                frame.status = flattened;
            send(frame.bytes(), round);
        } catch (const std::bad_alloc&) { // the sender sees the connection end
            markClosed();
            mChanged();
        }
    }
    if (wasFull)
        mChanged();
}

void AEServerConnection::send(std::string bytes, std::shared_ptr<void> round) {
    const std::lock_guard lock(mMutex);
    std::size_t sent = 0;
    if (mUnsent.empty()) {
        const ssize_t count = ::send(number(), bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count < 0 && !isWaiting(errno))
            return; // the peer has closed the connection
        sent = count > 0 ? static_cast<std::size_t>(count) : 0;
        mLastWrite = std::chrono::steady_clock::now();
    }
    if (sent == bytes.size())
        return;
    mUnsent.append(bytes, sent);
    mUnsentRounds.push_back(std::move(round));
    if (!mUnsentCharge.set(mUnsent.size())) // the peer does not read its replies
        markClosed();
    mChanged();
}

void AEServerConnection::write() {
    {
        const std::lock_guard lock(mMutex);
        const ssize_t count = ::send(number(), mUnsent.data(), mUnsent.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count >= 0) {
            mUnsent.erase(0, static_cast<std::size_t>(count));
            (void)mUnsentCharge.set(mUnsent.size());
            mLastWrite = std::chrono::steady_clock::now();
            if (mUnsent.empty()) {
                release(mUnsent);
                mUnsentRounds.clear();
            }
            return;
        }
        if (isWaiting(errno))
            return;
    }
    dropReplies();
}

void AEServerConnection::dropReplies() {
    const std::lock_guard lock(mMutex);
    release(mUnsent);
    (void)mUnsentCharge.set(0);
    mUnsentRounds.clear();
}

bool AEServerConnection::isUnreadSince(std::chrono::steady_clock::time_point time) const {
    const std::lock_guard lock(mMutex);
    return !mUnsent.empty() && mLastWrite <= time;
}

bool AEServerConnection::wantsToWrite() const {
    const std::lock_guard lock(mMutex);
    return !mUnsent.empty();
}

/// Lets handlers that work for the sender end.
void AEServerConnection::markClosed() {
    mClosed = true;
    wakeWaits();
}

void AEServerConnection::close() {
    markClosed();
    dropReplies();
    ::shutdown(number(), SHUT_RDWR);
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AEServerConnection.h"

#include "platform/ae/AEFlatten.h"
#include "platform/ae/AEMainThread.h"
#include "platform/ae/AEWaiting.h"

#include <cerrno>
#include <sys/socket.h>
#include <thread>

namespace quoddle {

namespace {

constexpr std::size_t kChunk = 64 << 10;
constexpr std::size_t kLargeEvent = 256 << 10; // bytes; a few milliseconds of work
// A reader that is as slow as that does not want its reply.
constexpr std::size_t kMaximumUnsent = kAEMaxSize + (std::size_t{1} << 20);

bool isWaiting(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

} // namespace

AEServerConnection::State AEServerConnection::read() {
    char chunk[kChunk];
    const ssize_t count = ::recv(number(), chunk, sizeof chunk, MSG_DONTWAIT);
    if (count < 0)
        return isWaiting(errno) ? State::Open : State::Closed;
    if (count == 0)
        return State::Closed;
    mLastRead = std::chrono::steady_clock::now();
    mReader.append({chunk, static_cast<std::size_t>(count)});
    return takeFrames();
}

AEServerConnection::State AEServerConnection::takeFrames() {
    while (!mIsTakingApart) {
        AEFrame frame;
        const auto complete = mReader.next(frame);
        if (!complete)
            return State::Closed;
        if (!*complete)
            break;
        if (deliver(std::move(frame)) == State::Closed)
            return State::Closed;
    }
    return State::Open;
}

AEServerConnection::State AEServerConnection::deliver(AEFrame frame) {
    if (frame.kind != AEFrame::Kind::Event)
        return State::Closed;
    ++mUnanswered;
    if (frame.payload.size() > kLargeEvent && AEHasMainThreadEvents()) {
        takeApartBeside(std::move(frame));
        return State::Open;
    }
    AEDesc event;
    if (AEUnflattenDesc(frame.payload, event) != noErr)
        return State::Closed;
    frame.payload.clear();
    return handOn(frame, std::move(event));
}

/// The main thread has a window to look after.
void AEServerConnection::takeApartBeside(AEFrame frame) {
    mIsTakingApart = true;
    std::thread([self = shared_from_this(), frame = std::move(frame)]() mutable {
        AEDesc event;
        const OSStatus status = AEUnflattenDesc(frame.payload, event);
        frame.payload.clear();
        AEPostToMainThread([self, frame, event, status] {
            self->mIsTakingApart = false;
            if (self->mClosed)
                return;
            if (status != noErr || self->handOn(frame, event) == State::Closed || self->takeFrames() == State::Closed)
                self->close();
            self->mChanged();
        });
    }).detach();
}

AEServerConnection::State AEServerConnection::handOn(const AEFrame& frame, AEDesc event) {
    if (!event.isAppleEvent())
        return State::Closed;
    // Whatever the sender called this process, here it is the current one.
    (void)event.setAttribute("addr"_4cc, AEDesc::ofCurrentProcess());
    auto& manager = NSAppleEventManager::sharedAppleEventManager();
    const AEDesc reply = frame.flags & AEFrame::kWantsReply ? AEEmptyReplyTo(event) : AEDesc();
    if (!manager.hasEventHandlerForEventClass(event.eventClass(), event.eventID())) {
        AEDesc failed = reply;
        if (failed.isAppleEvent())
            (void)failed.put("errn"_4cc, AEDesc::ofInt32(errAEEventNotHandled));
        answer(frame, failed, errAEEventNotHandled);
        return State::Open;
    }
    const auto self = shared_from_this();
    AEHandlerContext context;
    context.cancelled = [self] { return self->mClosed.load(); };
    auto delivery = std::make_shared<AEDelivery>(event, reply, std::move(context),
                                                 [self, frame](const AEDesc& answered) { self->answer(frame, answered, noErr); });
    AEDeliverer::deliver(manager, delivery);
    return State::Open;
}

void AEServerConnection::answer(const AEFrame& event, const AEDesc& reply, OSStatus status) {
    const bool wasFull = mUnanswered.fetch_sub(1) == kMaximumUnanswered;
    if (event.flags & AEFrame::kWantsReply && !mClosed) {
        AEFrame frame;
        frame.kind = AEFrame::Kind::Reply;
        frame.id = event.id;
        frame.status = status;
        if (const OSStatus flattened = AEFlattenDesc(reply, frame.payload); flattened != noErr)
            frame.status = flattened;
        send(frame.bytes());
    }
    if (wasFull)
        mChanged();
}

void AEServerConnection::send(std::string bytes) {
    const std::lock_guard lock(mMutex);
    std::size_t sent = 0;
    if (mUnsent.empty()) {
        const ssize_t count = ::send(number(), bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        sent = count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    if (sent == bytes.size())
        return;
    mUnsent.append(bytes, sent);
    if (mUnsent.size() > kMaximumUnsent)
        mClosed = true;
    mChanged();
}

AEServerConnection::State AEServerConnection::write() {
    const std::lock_guard lock(mMutex);
    if (mClosed)
        return State::Closed;
    const ssize_t count = ::send(number(), mUnsent.data(), mUnsent.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (count < 0)
        return isWaiting(errno) ? State::Open : State::Closed;
    mUnsent.erase(0, static_cast<std::size_t>(count));
    return State::Open;
}

bool AEServerConnection::wantsToWrite() const {
    const std::lock_guard lock(mMutex);
    return !mUnsent.empty();
}

void AEServerConnection::close() {
    mClosed = true;
    ::shutdown(number(), SHUT_RDWR);
}

} // namespace quoddle

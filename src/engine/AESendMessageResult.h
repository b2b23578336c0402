// SPDX-License-Identifier: MIT
// The state that a thread waiting for a reply shares with the operation that sends the event. All functions are thread-safe.
#pragma once

#include "platform/ae/AEDesc.h"
#include "platform/base/Wait.h"

#include <mutex>
#include <utility>

namespace quoddle {

class AESendMessageResult {
public:
    /// True once the background send has finished.
    bool isHandled() const { return locked(mHandled); }
    void setHandled(bool handled) { setLocked(mHandled, handled); }
    /// The status that the send has returned; 0 before it has finished.
    OSStatus error() const { return locked(mError); }
    void setError(OSStatus error) { setLocked(mError, error); }

    /// The send writes the reply here; no other thread may use it before the result is handled. Its type is "null" as long as there is no
    /// reply.
    AEDesc* replyEventPointer() { return &mReplyEvent; }
    AEDesc replyEvent() const { return locked(mReplyEvent); }
    void setReplyEvent(AEDesc replyEvent) { setLocked(mReplyEvent, std::move(replyEvent)); }
    /// Moves the reply out.
    AEDesc detachedReplyEvent() {
        const std::lock_guard lock(mMutex);
        return std::exchange(mReplyEvent, AEDesc());
    }

    /// Whether the waiting thread has given up, so that the send may end early.
    bool isAbandoned() const { return locked(mAbandoned); }
    void abandon() {
        setLocked(mAbandoned, true);
        wakeWaits(); // of the send and of the handler that answers
    }

private:
    template<class T>
    T locked(const T& field) const {
        const std::lock_guard lock(mMutex);
        return field;
    }
    template<class T>
    void setLocked(T& field, T value) {
        const std::lock_guard lock(mMutex);
        field = std::move(value);
    }

    mutable std::mutex mMutex;
    bool mHandled = false;
    bool mAbandoned = false;
    OSStatus mError = noErr;
    AEDesc mReplyEvent;
};

} // namespace quoddle

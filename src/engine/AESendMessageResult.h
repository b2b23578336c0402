// SPDX-License-Identifier: MIT
// What a thread that waits for a reply and the operation that sends the event share. Every operation is thread-safe.
#pragma once

#include "platform/ae/AEDesc.h"
#include "platform/base/Wait.h"

#include <mutex>

namespace quoddle {

class AESendMessageResult {
public:
    /// YES once the background send has finished.
    bool isHandled() const { return locked(mHandled); }
    void setHandled(bool handled) { setLocked(mHandled, handled); }
    /// The status that the send returned; 0 before.
    OSStatus error() const { return locked(mError); }
    void setError(OSStatus error) { setLocked(mError, error); }

    /// Where the send writes the reply; nobody else touches it before the result is handled. Its type is "null" while there is none.
    AEDesc* replyEventPointer() { return &mReplyEvent; }
    AEDesc replyEvent() const { return locked(mReplyEvent); }
    void setReplyEvent(AEDesc replyEvent) { setLocked(mReplyEvent, std::move(replyEvent)); }
    /// Gives the reply away: what stays is empty.
    AEDesc detachedReplyEvent() {
        const std::lock_guard lock(mMutex);
        return std::exchange(mReplyEvent, AEDesc());
    }

    /// The waiting side has gone: the send may end early.
    bool isAbandoned() const { return locked(mAbandoned); }
    void abandon() {
        setLocked(mAbandoned, true);
        wakeWaits(); // of the send, and of the handler that answers
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

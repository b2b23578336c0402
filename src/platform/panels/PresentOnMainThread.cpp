// SPDX-License-Identifier: MIT
#include "platform/panels/PresentOnMainThread.h"

#include "platform/ae/AEMainThread.h"
#include "platform/base/Wait.h"
#include "platform/panels/DialogQueue.h"
#include "platform/panels/StandardCommands.h"

#include <mutex>

namespace quoddle {

namespace {

constexpr std::chrono::milliseconds kSlice{20}; // the time for which the main thread's events are processed at once

/// The reply on its way back: made by the thread that waits, and shared by it and the work on the main thread.
class Exchange {
public:
    void begin(std::uint64_t number) {
        std::lock_guard lock(mMutex);
        mNumber = number;
    }
    std::uint64_t number() {
        std::lock_guard lock(mMutex);
        return mNumber;
    }
    void complete(const AEDesc& reply) {
        std::lock_guard lock(mMutex);
        mReply = reply;
        mWaiting->wake();
    }
    std::optional<AEDesc> reply() {
        std::lock_guard lock(mMutex);
        return mReply;
    }

private:
    const std::shared_ptr<Waker> mWaiting = Wait::waker();
    std::mutex mMutex;
    std::optional<AEDesc> mReply;
    std::uint64_t mNumber = 0;
};

/// A command on its way to the main thread. When the application ends before it is run, its destruction completes the reply with -609.
class PostedCommand {
public:
    PostedCommand(std::shared_ptr<Exchange> exchange, AEDesc event, AEDesc reply)
        : mExchange(std::move(exchange)), mEvent(std::move(event)), mReply(std::move(reply)) {}
    ~PostedCommand() {
        if (mRan)
            return;
        (void)mReply.put("errn"_4cc, AEDesc::ofInt32(connectionInvalid));
        mExchange->complete(mReply);
    }
    PostedCommand(const PostedCommand&) = delete;
    PostedCommand& operator=(const PostedCommand&) = delete;

    void run() {
        mRan = true;
        mExchange->begin(
            performStandardCommand(mEvent, mReply, [exchange = mExchange](const AEDesc& reply) { exchange->complete(reply); }));
    }

private:
    const std::shared_ptr<Exchange> mExchange;
    const AEDesc mEvent;
    AEDesc mReply;
    bool mRan = false;
};

} // namespace

OSErr presentOnMainThread(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    auto exchange = std::make_shared<Exchange>();
    auto posted = std::make_shared<PostedCommand>(exchange, event, reply);
    AEPostToMainThread([posted = std::move(posted)] { posted->run(); });
    for (Wait wait; !context.isCancelled();) {
        if (auto answered = exchange->reply()) {
            reply = std::move(*answered);
            return noErr;
        }
        if (!AEProcessMainThreadEvents(kSlice))
            wait.pause(std::chrono::steady_clock::time_point::max());
    }
    // Posted after the command itself, so the number is known when this runs.
    AEPostToMainThread([exchange] { DialogQueue::shared().cancel(exchange->number()); });
    return static_cast<OSErr>(userCanceledErr);
}

} // namespace quoddle

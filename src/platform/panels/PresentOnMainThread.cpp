// SPDX-License-Identifier: MIT
#include "platform/panels/PresentOnMainThread.h"

#include "platform/ae/AEMainThread.h"
#include "platform/panels/StandardCommands.h"

#include <condition_variable>
#include <mutex>

namespace quoddle {

namespace {

constexpr std::chrono::milliseconds kSlice{20}; // how soon a cancel is noticed

/// Shared by the thread that waits and the work on the main thread.
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
        mArrived.notify_all();
    }
    std::optional<AEDesc> waitForReply() {
        if (AEProcessMainThreadEvents(kSlice)) {
            std::lock_guard lock(mMutex);
            return mReply;
        }
        std::unique_lock lock(mMutex);
        mArrived.wait_for(lock, kSlice, [this] { return mReply.has_value(); });
        return mReply;
    }

private:
    std::mutex mMutex;
    std::condition_variable mArrived;
    std::optional<AEDesc> mReply;
    std::uint64_t mNumber = 0;
};

/// Work on its way to the main thread; thrown away there unrun when the application ends.
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
            StandardCommands::shared().perform(mEvent, mReply, [exchange = mExchange](const AEDesc& reply) { exchange->complete(reply); }));
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
    while (!context.isCancelled()) {
        if (auto answered = exchange->waitForReply()) {
            reply = std::move(*answered);
            return noErr;
        }
    }
    // After what was posted above, so that the number is known by then.
    AEPostToMainThread([exchange] { StandardCommands::shared().cancel(exchange->number()); });
    return static_cast<OSErr>(userCanceledErr);
}

} // namespace quoddle

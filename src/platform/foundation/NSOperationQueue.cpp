// SPDX-License-Identifier: MIT
#include "platform/foundation/NSOperationQueue.h"

#include "platform/base/Wait.h"
#include "platform/foundation/NSLog.h"

#include <chrono>
#include <exception>

namespace quoddle {

namespace {

// Runs a block and logs an exception that leaves it, because an exception cannot leave its thread.
void callGuarded(const std::function<void()>& block) {
    if (!block)
        return;
    try {
        block();
    } catch (const std::exception& exception) {
        NSLog(QStringLiteral("NSOperation: exception dropped: %@"), {QString::fromUtf8(exception.what())});
    } catch (...) {
        NSLog(QStringLiteral("NSOperation: exception dropped"));
    }
}

} // namespace

void NSOperation::cancel() {
    mCancelled = true;
    wakeWaits();
}

void NSOperation::start() {
    if (!mCancelled) {
        mExecuting = true;
        callGuarded(mBlock);
        mExecuting = false;
    }
    mBlock = nullptr; // frees the block's captures now, though others may still hold the operation
    mFinished = true;
}

void NSOperation::complete() {
    callGuarded(mCompletionBlock);
    mCompletionBlock = nullptr;
}

NSOperationQueue::NSOperationQueue(int maxConcurrentOperationCount)
    : mMaxConcurrentOperationCount(std::max(1, maxConcurrentOperationCount)) {}

NSOperationQueue::~NSOperationQueue() {
    cancelAllOperations();
    {
        std::lock_guard lock(mMutex);
        mClosing = true;
    }
    mArrived.notify_all();
    for (std::thread& worker : mWorkers)
        worker.join();
}

void NSOperationQueue::addOperation(std::shared_ptr<NSOperation> operation) {
    {
        std::lock_guard lock(mMutex);
        auto place = std::find_if(mWaiting.begin(), mWaiting.end(),
                                  [&](const auto& other) { return other->queuePriority() < operation->queuePriority(); });
        mWaiting.insert(place, std::move(operation));
        // A thread is only started when no idle thread can take the work, so a serial queue has one and an unused queue none.
        const bool busy = mIdleWorkers < static_cast<int>(mWaiting.size());
        if (busy && static_cast<int>(mWorkers.size()) < mMaxConcurrentOperationCount)
            mWorkers.emplace_back([this] { work(); });
    }
    mArrived.notify_one();
}

void NSOperationQueue::addOperation(std::function<void()> block) {
    addOperation(std::make_shared<NSOperation>(std::move(block)));
}

void NSOperationQueue::suspendBehindRunning() {
    std::lock_guard lock(mMutex);
    mSuspended = !mRunning.empty();
}

void NSOperationQueue::resume() {
    {
        std::lock_guard lock(mMutex);
        mSuspended = false;
    }
    mArrived.notify_all();
}

int NSOperationQueue::operationCount() const {
    std::lock_guard lock(mMutex);
    return static_cast<int>(mWaiting.size() + mRunning.size());
}

void NSOperationQueue::cancelAllOperations() {
    std::lock_guard lock(mMutex);
    for (const auto& operation : mWaiting)
        operation->cancel();
    for (const auto& operation : mRunning)
        operation->cancel();
}

void NSOperationQueue::cancelWaitingOperations() {
    std::lock_guard lock(mMutex);
    for (const auto& operation : mWaiting)
        operation->cancel();
}

void NSOperationQueue::waitUntilAllOperationsAreFinished() {
    std::unique_lock lock(mMutex);
    mQuiet.wait(lock, [this] { return isQuiet(); });
}

bool NSOperationQueue::waitUntilAllOperationsAreFinished(std::chrono::milliseconds limit) {
    std::unique_lock lock(mMutex);
    return mQuiet.wait_for(lock, limit, [this] { return isQuiet(); });
}

std::shared_ptr<NSOperation> NSOperationQueue::takeNext() {
    std::unique_lock lock(mMutex);
    ++mIdleWorkers;
    mArrived.wait(lock, [this] { return mClosing || (!mSuspended && !mWaiting.empty()); });
    --mIdleWorkers;
    if (mWaiting.empty())
        return nullptr;
    auto operation = std::move(mWaiting.front());
    mWaiting.pop_front();
    mRunning.push_back(operation);
    return operation;
}

void NSOperationQueue::finish(const std::shared_ptr<NSOperation>& operation) {
    {
        std::lock_guard lock(mMutex);
        std::erase(mRunning, operation);
        ++mCompleting;
    }
    operation->complete();
    {
        std::lock_guard lock(mMutex);
        --mCompleting;
    }
    mQuiet.notify_all();
}

void NSOperationQueue::work() {
    while (auto operation = takeNext()) {
        operation->start();
        finish(operation);
    }
}

} // namespace quoddle

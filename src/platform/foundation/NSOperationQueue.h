// SPDX-License-Identifier: MIT
// Operations and the queues that run them on worker threads.
// Decision: an operation leaves its queue's count before its completion block runs, so the block sees a queue without it. There are no
// dependencies between operations, and no main queue (see MainThread.h).
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace quoddle {

class NSOperation {
public:
    enum class QueuePriority { veryLow = -8, low = -4, normal = 0, high = 4, veryHigh = 8 };

    /// `block` runs once, on a worker thread. An exception that leaves it is logged and dropped.
    explicit NSOperation(std::function<void()> block) : mBlock(std::move(block)) {}

    /// `block` runs on the same thread after the operation has left its queue, also when the operation was cancelled before it began. Must
    /// be set before the operation is added.
    void setCompletionBlock(std::function<void()> block) { mCompletionBlock = std::move(block); }
    /// Must be set before the operation is added.
    void setQueuePriority(QueuePriority priority) { mPriority = priority; }
    QueuePriority queuePriority() const { return mPriority; }

    /// Any thread. The block of a waiting operation will not run; that of a running one can only ask isCancelled().
    void cancel();
    bool isCancelled() const { return mCancelled; }
    bool isExecuting() const { return mExecuting; }
    bool isFinished() const { return mFinished; }

private:
    friend class NSOperationQueue;
    void start();
    void complete();

    std::function<void()> mBlock;
    std::function<void()> mCompletionBlock;
    QueuePriority mPriority = QueuePriority::normal;
    std::atomic<bool> mCancelled = false;
    std::atomic<bool> mExecuting = false;
    std::atomic<bool> mFinished = false;
};

/// All functions are thread-safe.
class NSOperationQueue {
public:
    explicit NSOperationQueue(int maxConcurrentOperationCount = 1);
    /// Cancels the waiting operations and waits for the running ones.
    ~NSOperationQueue();
    NSOperationQueue(const NSOperationQueue&) = delete;
    NSOperationQueue& operator=(const NSOperationQueue&) = delete;

    /// The queue keeps the operation until it has finished. Operations of equal priority run in the order in which they were added.
    void addOperation(std::shared_ptr<NSOperation> operation);
    void addOperation(std::function<void()> block);

    /// While an operation is running, stops waiting ones from beginning until resume(). Without a running one the queue is not suspended.
    void suspendBehindRunning();
    void resume();

    int maxConcurrentOperationCount() const { return mMaxConcurrentOperationCount; }
    /// The number of waiting and running operations.
    int operationCount() const;
    void cancelAllOperations();
    /// Cancels the operations that have not begun.
    void cancelWaitingOperations();
    /// Waits for the completion blocks, too. Must not be called from an operation of this queue.
    void waitUntilAllOperationsAreFinished();
    /// The same with a time limit; whether all operations are finished.
    bool waitUntilAllOperationsAreFinished(std::chrono::milliseconds limit);

private:
    void work();
    std::shared_ptr<NSOperation> takeNext();
    void finish(const std::shared_ptr<NSOperation>& operation);
    bool isQuiet() const { return mWaiting.empty() && mRunning.empty() && mCompleting == 0; }

    const int mMaxConcurrentOperationCount;
    mutable std::mutex mMutex;
    std::condition_variable mArrived;
    std::condition_variable mQuiet;
    std::deque<std::shared_ptr<NSOperation>> mWaiting;
    std::vector<std::shared_ptr<NSOperation>> mRunning;
    std::vector<std::thread> mWorkers;
    int mIdleWorkers = 0;
    int mCompleting = 0;
    bool mSuspended = false;
    bool mClosing = false;
};

} // namespace quoddle

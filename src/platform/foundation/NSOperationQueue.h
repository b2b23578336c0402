// SPDX-License-Identifier: MIT
// Operations and the queues that run them on worker threads of their own.
// One decision: an operation leaves the count of its queue before its completion block runs, so whoever is told of the end sees a queue
// without it. It knows no dependencies between operations and no main queue (see MainThread.h).
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

    /// The block runs once, on a worker thread. An exception that leaves it is logged and dropped.
    explicit NSOperation(std::function<void()> block) : mBlock(std::move(block)) {}

    /// Runs after the operation has left its queue, on the same thread; also after an operation that was cancelled before it began.
    /// Set before the operation is added.
    void setCompletionBlock(std::function<void()> block) { mCompletionBlock = std::move(block); }
    /// Set before the operation is added.
    void setQueuePriority(QueuePriority priority) { mPriority = priority; }
    QueuePriority queuePriority() const { return mPriority; }

    /// Any thread. A waiting operation never runs its block; a running one only learns of it through isCancelled().
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

/// Every operation is thread-safe.
class NSOperationQueue {
public:
    explicit NSOperationQueue(int maxConcurrentOperationCount = 1);
    /// Cancels what waits, waits for what runs.
    ~NSOperationQueue();
    NSOperationQueue(const NSOperationQueue&) = delete;
    NSOperationQueue& operator=(const NSOperationQueue&) = delete;

    /// The queue keeps the operation until it has finished. Equal priorities run in the order in which they came.
    void addOperation(std::shared_ptr<NSOperation> operation);
    void addOperation(std::function<void()> block);

    /// Nothing that waits begins from now on, provided that something runs; otherwise the queue stays as it is.
    void suspendBehindRunning();
    void resume();

    int maxConcurrentOperationCount() const { return mMaxConcurrentOperationCount; }
    /// Waiting and running operations together.
    int operationCount() const;
    void cancelAllOperations();
    /// Those that have not begun.
    void cancelWaitingOperations();
    /// Their completion blocks too. Not from an operation of this queue.
    void waitUntilAllOperationsAreFinished();
    /// The same, but for so long at most; answers whether all are finished.
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

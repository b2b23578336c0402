// SPDX-License-Identifier: MIT
// A main thread for tests: the thread that makes an EventLoop counts as the main thread as long as the object lives.
#pragma once

#include "platform/ae/AEMainThread.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace quoddle {

class EventLoop {
public:
    EventLoop() {
        AESetMainThread({[this] { return isCurrent(); }, [this](std::function<void()> work) { post(std::move(work)); },
                         [this](std::chrono::milliseconds slice) { process(slice); }});
    }
    ~EventLoop() { AESetMainThread({}); }

    bool isCurrent() const { return std::this_thread::get_id() == mThread; }

    void post(std::function<void()> work) {
        std::lock_guard lock(mMutex);
        mWork.push_back(std::move(work));
        mArrived.notify_one();
    }

    /// Runs one piece of work, for which it waits no longer than the slice.
    void process(std::chrono::milliseconds slice) {
        std::unique_lock lock(mMutex);
        if (!mArrived.wait_for(lock, slice, [this] { return !mWork.empty(); }))
            return;
        auto work = std::move(mWork.front());
        mWork.pop_front();
        lock.unlock();
        work();
    }

    /// Runs the body on another thread and the loop on this one until the body has ended.
    void runBeside(const std::function<void()>& body) {
        std::atomic<bool> ended = false;
        std::thread worker([&] {
            body();
            ended = true;
        });
        while (!ended)
            process(std::chrono::milliseconds(1));
        worker.join();
    }

    /// Drops the posted work; waits for the first when there is none.
    void dropWork() {
        std::unique_lock lock(mMutex);
        mArrived.wait(lock, [this] { return !mWork.empty(); });
        mWork.clear();
    }

private:
    const std::thread::id mThread = std::this_thread::get_id();
    std::mutex mMutex;
    std::condition_variable mArrived;
    std::deque<std::function<void()>> mWork;
};

} // namespace quoddle

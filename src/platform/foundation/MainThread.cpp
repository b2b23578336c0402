// SPDX-License-Identifier: MIT
#include "platform/foundation/MainThread.h"

#include "platform/foundation/NSLog.h"

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QThread>

namespace quoddle::MainThread {

namespace {

/// A piece of work for the main thread. Shared by the queue and, for dispatchSync(), the waiting caller.
struct Item {
    std::function<void()> work;
    bool done = false; // `done` and `dropped` are guarded by the queue's mutex
    bool dropped = false;
};

struct Queue {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::shared_ptr<Item>> items;
    bool closed = false;
};

// Never destroyed, because worker threads may outlive the static objects of the main thread.
Queue& queue() {
    static auto* shared = new Queue;
    return *shared;
}

void runGuarded(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& exception) {
        NSLog(QStringLiteral("MainThread: exception dropped: %@"), {QString::fromUtf8(exception.what())});
    } catch (...) {
        NSLog(QStringLiteral("MainThread: exception dropped"));
    }
}

void runNext() {
    std::shared_ptr<Item> item;
    {
        std::lock_guard lock(queue().mutex);
        if (queue().closed || queue().items.empty())
            return;
        item = std::move(queue().items.front());
        queue().items.pop_front();
    }
    runGuarded(item->work);
    item->work = nullptr;
    std::lock_guard lock(queue().mutex);
    item->done = true;
    queue().changed.notify_all();
}

const auto kWakeUp = static_cast<QEvent::Type>(QEvent::registerEventType());

/// Runs the next item for each wake-up event. The event carries no data, so that the threads share nothing but the queue.
class Receiver final : public QObject {
public:
    bool event(QEvent* event) override {
        if (event->type() != kWakeUp)
            return QObject::event(event);
        runNext();
        return true;
    }
};

/// Must be called with the queue's mutex held.
Receiver* receiverOn(QThread* mainThread) {
    static auto* receiver = [mainThread] {
        auto* made = new Receiver;
        made->moveToThread(mainThread);
        return made;
    }();
    return receiver;
}

/// Posts one wake-up event per item. The item itself stays in the queue, where close() can find it.
std::shared_ptr<Item> enqueue(std::function<void()> work) {
    auto item = std::make_shared<Item>();
    item->work = std::move(work);
    Receiver* receiver;
    {
        std::lock_guard lock(queue().mutex);
        auto* application = QCoreApplication::instance();
        if (queue().closed || !application) {
            item->dropped = true;
            return item;
        }
        queue().items.push_back(item);
        receiver = receiverOn(application->thread());
    }
    // The event is posted without the mutex, which the main thread takes as soon as it wakes. The receiver is never destroyed.
    QCoreApplication::postEvent(receiver, new QEvent(kWakeUp), Qt::NormalEventPriority);
    return item;
}

} // namespace

bool isCurrent() {
    const auto* application = QCoreApplication::instance();
    return !application || application->thread() == QThread::currentThread();
}

void dispatchAsync(std::function<void()> work) {
    enqueue(std::move(work));
}

bool dispatchSync(std::function<void()> work) {
    if (isCurrent()) {
        runGuarded(work);
        return true;
    }
    const std::shared_ptr<Item> item = enqueue(std::move(work));
    std::unique_lock lock(queue().mutex);
    queue().changed.wait(lock, [&] { return item->done || item->dropped; });
    return item->done;
}

void close() {
    std::deque<std::shared_ptr<Item>> dropped;
    {
        std::lock_guard lock(queue().mutex);
        queue().closed = true;
        dropped.swap(queue().items);
        for (const auto& item : dropped)
            item->dropped = true;
    }
    queue().changed.notify_all();
}

void open() {
    std::lock_guard lock(queue().mutex);
    queue().closed = false;
    if (const auto* application = QCoreApplication::instance())
        receiverOn(application->thread());
}

} // namespace quoddle::MainThread

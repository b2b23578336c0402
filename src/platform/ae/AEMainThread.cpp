// SPDX-License-Identifier: MIT
#include "platform/ae/AEMainThread.h"

#include <memory>
#include <mutex>

namespace quoddle {

namespace {

std::mutex sMutex;
std::shared_ptr<const AEMainThread> sMainThread;

// Returns a copy, so that removing the functions does not destroy them while another thread calls them.
std::shared_ptr<const AEMainThread> mainThread() {
    std::lock_guard lock(sMutex);
    return sMainThread;
}

} // namespace

void AESetMainThread(AEMainThread mainThread) {
    auto installed = mainThread.isCurrent && mainThread.post ? std::make_shared<const AEMainThread>(std::move(mainThread)) : nullptr;
    std::lock_guard lock(sMutex);
    sMainThread.swap(installed);
}

bool AEIsMainThread() {
    auto thread = mainThread();
    return !thread || thread->isCurrent();
}

bool AEHasMainThreadEvents() {
    const auto thread = mainThread();
    return thread && thread->processEvents && thread->isCurrent();
}

void AEPostToMainThread(std::function<void()> work) {
    if (auto thread = mainThread())
        thread->post(std::move(work));
    else
        work();
}

bool AEProcessMainThreadEvents(std::chrono::milliseconds slice) {
    auto thread = mainThread();
    if (!thread || !thread->processEvents || !thread->isCurrent())
        return false;
    thread->processEvents(slice);
    return true;
}

std::shared_ptr<void> AEWatchDescriptor(int descriptor, std::function<void()> ready) {
    const auto thread = mainThread();
    return thread && thread->watch && thread->isCurrent() ? thread->watch(descriptor, std::move(ready)) : nullptr;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "engine/EventMainThread.h"

#include "platform/ae/AEMainThread.h"
#include "platform/ae/NSAppleEventManager.h"
#include "platform/foundation/MainThread.h"

#include <QCoreApplication>
#include <QTimer>

namespace quoddle {

namespace {

void processEvents(std::chrono::milliseconds slice) {
    QTimer endOfSlice;
    endOfSlice.setSingleShot(true);
    endOfSlice.start(slice);
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

} // namespace

void installEventMainThread() {
    AESetMainThread({MainThread::isCurrent, MainThread::dispatchAsync, processEvents});
}

void removeEventMainThread() {
    NSAppleEventManager::sharedAppleEventManager().answerSuspendedEvents();
    AESetMainThread({});
}

} // namespace quoddle

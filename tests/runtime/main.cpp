// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/ae/AEMainThread.h"
#include "platform/foundation/MainThread.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    using namespace quoddle;
    QCoreApplication application(argc, argv);
    MainThread::open();
    AEMainThread thread;
    thread.isCurrent = &MainThread::isCurrent;
    thread.post = &MainThread::dispatchAsync;
    thread.processEvents = [](std::chrono::milliseconds slice) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, static_cast<int>(slice.count()));
    };
    AESetMainThread(thread);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

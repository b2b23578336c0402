// SPDX-License-Identifier: MIT
#include "platform/foundation/MainThread.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    quoddle::MainThread::open();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

// SPDX-License-Identifier: MIT
#include "platform/appkit/NSApplication.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

int main(int argc, char** argv) {
    QTemporaryDir settings; // keeps the tests away from the user's settings
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    quoddle::NSApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

// SPDX-License-Identifier: MIT
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSUserDefaults.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

int main(int argc, char** argv) {
    QTemporaryDir folders; // keeps the tests away from the user's settings and files
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_RUNTIME_DIR", "HOME"})
        qputenv(variable, folders.path().toLocal8Bit());
    QLocale::setDefault(QLocale::c());
    quoddle::setUserDefaultsDomain(QStringLiteral("panels"));
    quoddle::NSApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Tester"));
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

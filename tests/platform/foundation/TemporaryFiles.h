// SPDX-License-Identifier: MIT
// A test fixture with a folder for files of its own.
#pragma once

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace quoddle::test {

class TemporaryFiles : public testing::Test {
protected:
    /// Writes a file in the folder and returns its path.
    QString write(const QString& name, const QByteArray& bytes) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }
    QTemporaryDir folder;
};

} // namespace quoddle::test

// SPDX-License-Identifier: MIT
// A test that has a folder of its own for files.
#pragma once

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace quoddle::test {

class TemporaryFiles : public testing::Test {
protected:
    /// The path of the new file.
    QString write(const QString& name, const QByteArray& bytes) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }
    QTemporaryDir folder;
};

} // namespace quoddle::test

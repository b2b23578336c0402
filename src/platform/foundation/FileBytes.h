// SPDX-License-Identifier: MIT
// The one way to whatever a bundle holds: a pipe or a device in the place of a file must not make anybody wait.
#pragma once

#include "platform/base/File.h"

#include <QByteArray>
#include <QFile>

namespace quoddle {

/// quoddle::readFile() for Qt's texts and bytes.
inline Result<QByteArray, OSStatus> bytesOfFile(const QString& path, qint64 maximumSize) {
    const auto bytes = readFile(QFile::encodeName(path).toStdString(), static_cast<std::size_t>(maximumSize));
    if (!bytes)
        return Failure{bytes.error()};
    return QByteArray::fromStdString(*bytes);
}

} // namespace quoddle

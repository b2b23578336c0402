// SPDX-License-Identifier: MIT
// Reads files of bundles in the only safe way: a pipe or a device in the place of a file must not block the reader.
#pragma once

#include "platform/base/File.h"

#include <QByteArray>
#include <QFile>

namespace quoddle {

/// quoddle::readFile() with Qt's types.
inline Result<QByteArray, OSStatus> bytesOfFile(const QString& path, qint64 maximumSize) {
    const auto bytes = readFile(QFile::encodeName(path).toStdString(), static_cast<std::size_t>(maximumSize));
    if (!bytes)
        return Failure{bytes.error()};
    return QByteArray::fromStdString(*bytes);
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Data that is sent to or received from another program through a pipe. The other program may be slow or not read at all.
#pragma once

#include "platform/base/FileDescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

namespace quoddle {

/// Reads until the other side closes; empty when that is more than 128 MiB or nothing arrives for five seconds.
QByteArray readPipe(const FileDescriptor& pipe);

/// Writes in the background. Destroys itself when all is written, the reader has gone, or it has read nothing for half a minute.
class PipeWriter : public QObject {
    Q_OBJECT

public:
    PipeWriter(FileDescriptor pipe, QByteArray bytes, QObject* parent);

private:
    void write();

    FileDescriptor mPipe;
    const QByteArray mBytes;
    qsizetype mWritten = 0;
    QSocketNotifier mWritable;
    QTimer mPatience;
};

} // namespace quoddle

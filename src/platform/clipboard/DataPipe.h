// SPDX-License-Identifier: MIT
// Data that goes through a pipe to a program, or comes from one, that may be slow, or may not care at all.
#pragma once

#include "platform/base/FileDescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

namespace quoddle {

/// What comes until the other side closes; empty when it is more than 128 MiB or when nothing has come for five seconds.
QByteArray readPipe(const FileDescriptor& pipe);

/// Writes in the background and destroys itself when all is written, or when the reader has gone or has taken nothing for half a minute.
class PipeWriter : public QObject {
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

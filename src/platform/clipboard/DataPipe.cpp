// SPDX-License-Identifier: MIT
#include "platform/clipboard/DataPipe.h"

#include "platform/ae/AEFlatten.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <poll.h>

namespace quoddle {

using namespace std::chrono_literals;

namespace {
constexpr int kReadPatience = 5000; // milliseconds
constexpr auto kWritePatience = 30s;
} // namespace

QByteArray readPipe(const FileDescriptor& pipe) {
    QByteArray bytes;
    pollfd readable{pipe.number(), POLLIN, 0};
    while (::poll(&readable, 1, kReadPatience) > 0) {
        char part[65536];
        const ssize_t count = ::read(pipe.number(), part, sizeof part);
        if (count == 0)
            return bytes;
        if (count < 0 || static_cast<std::size_t>(bytes.size() + count) > kAEMaxSize)
            break;
        bytes.append(part, count);
    }
    return {};
}

PipeWriter::PipeWriter(FileDescriptor pipe, QByteArray bytes, QObject* parent)
    : QObject(parent), mPipe(std::move(pipe)), mBytes(std::move(bytes)), mWritable(mPipe.number(), QSocketNotifier::Write) {
    ::fcntl(mPipe.number(), F_SETFL, O_NONBLOCK);
    connect(&mWritable, &QSocketNotifier::activated, this, &PipeWriter::write);
    connect(&mPatience, &QTimer::timeout, this, &QObject::deleteLater);
    mPatience.start(kWritePatience);
}

void PipeWriter::write() {
    const ssize_t count = ::write(mPipe.number(), mBytes.constData() + mWritten, static_cast<std::size_t>(mBytes.size() - mWritten));
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    mWritten += std::max<ssize_t>(count, 0);
    mPatience.start();
    if (count >= 0 && mWritten < mBytes.size())
        return;
    mWritable.setEnabled(false);
    deleteLater();
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "EventSocket.h"

#include "platform/ae/AEFlatten.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quoddle {

namespace {

constexpr int kUsageError = 2;

bool isSocket(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode);
}

/// Ends the process without a core file when Qt, which finds no display, reports a fatal error and is about to abort.
void endQuietly(QtMsgType type, const QMessageLogContext&, const QString&) {
    if (type == QtFatalMsg)
        std::_Exit(EventSocket::kNoDisplayStatus);
}

} // namespace

std::optional<int> EventSocket::startedByHand(const char* purpose, int argc, char** argv) {
    if (isSocket(STDIN_FILENO)) {
        qInstallMessageHandler(&endQuietly);
        return std::nullopt;
    }
    const bool isAsked = argc > 1 && std::string_view(argv[1]) == "--help";
    std::fprintf(isAsked ? stdout : stderr, "%s; other programs start it when they need it\n", purpose);
    return isAsked ? EXIT_SUCCESS : kUsageError;
}

AEDesc EventSocket::emptyReply() {
    return AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
}

EventSocket::EventSocket(Handler handler) : mHandler(std::move(handler)), mReadable(STDIN_FILENO, QSocketNotifier::Read) {
    connect(&mReadable, &QSocketNotifier::activated, this, &EventSocket::read);
}

void EventSocket::read() {
    char bytes[65536];
    const ssize_t count = ::recv(STDIN_FILENO, bytes, sizeof bytes, MSG_DONTWAIT);
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count <= 0)
        return close();
    mReader.append({bytes, static_cast<std::size_t>(count)});
    AEFrame frame;
    while (isOpen()) {
        const auto complete = mReader.next(frame);
        if (!complete)
            return close();
        if (!*complete)
            return;
        perform(frame);
    }
}

void EventSocket::perform(const AEFrame& frame) {
    AEDesc event;
    if (frame.kind != AEFrame::Kind::Event || AEUnflattenDesc(frame.payload, event) != noErr || !event.isAppleEvent())
        return close();
    mHandler(event, [this, id = frame.id](const AEDesc& reply) { answer(id, reply); });
}

void EventSocket::answer(std::uint32_t id, const AEDesc& reply) {
    AEFrame frame{.kind = AEFrame::Kind::Reply, .id = id};
    (void)AEFlattenDesc(reply, frame.payload);
    const std::string bytes = frame.bytes();
    // The asking program waits for the reply and reads it, so writing without a poll does not block for long.
    for (std::string_view rest = bytes; !rest.empty() && isOpen();) {
        const ssize_t count = ::send(STDIN_FILENO, rest.data(), rest.size(), MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR)
            return close();
        rest.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

void EventSocket::close() {
    if (!isOpen())
        return;
    mReadable.setEnabled(false);
    Q_EMIT closed();
}

} // namespace quoddle

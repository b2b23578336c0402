// SPDX-License-Identifier: MIT
// The standard input of a program that other programs start: a socket over which Apple events come, one after the other, and their replies
// go back.
#pragma once

#include "platform/ae/transport/AEFrame.h"

#include <functional>
#include <optional>

#include <QObject>
#include <QSocketNotifier>

namespace quoddle {

class EventSocket : public QObject {
    Q_OBJECT
public:
    using Completion = std::function<void(const AEDesc& reply)>;
    /// Handles an event; calls the completion once, perhaps before it returns.
    using Handler = std::function<void(const AEDesc& event, Completion completion)>;

    /// The exit status of a program that serves such a socket when it cannot reach a display.
    static constexpr int kNoDisplayStatus = 3;
    /// To be called first in such a program. When standard input is no socket, a person has started the program: prints its `purpose`, on
    /// standard output with --help, and answers the exit status. Otherwise answers nullopt, and from then on Qt ends the program with
    /// kNoDisplayStatus, without a core file, when it finds no display.
    static std::optional<int> startedByHand(const char* purpose, int argc, char** argv);
    static AEDesc emptyReply();
    explicit EventSocket(Handler handler);

    bool isOpen() const { return mReadable.isEnabled(); }

Q_SIGNALS:
    /// The other side has closed the socket or sent something that makes no sense. Nothing is received or sent after that.
    void closed();

private:
    void read();
    void perform(const AEFrame& frame);
    void answer(std::uint32_t id, const AEDesc& reply);
    void close();

    const Handler mHandler;
    QSocketNotifier mReadable;
    AEFrameReader mReader;
};

} // namespace quoddle

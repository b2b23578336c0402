// SPDX-License-Identifier: MIT
// The standard input of a program that others start to have something done: a socket over which Apple events come, one after the other, and
// their replies go back.
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
    /// Calls the completion once, perhaps before it returns.
    using Handler = std::function<void(const AEDesc& event, Completion completion)>;

    /// The exit status of a program that serves such a socket when it cannot reach a display.
    static constexpr int kNoDisplayStatus = 3;
    /// The first thing in such a program. Without a socket on standard input a person has started it: tells them its `purpose`, on standard
    /// output with --help, and answers the status to end with. Else nothing, and Qt ends the program with kNoDisplayStatus, without a core,
    /// when it finds no display.
    static std::optional<int> startedByHand(const char* purpose, int argc, char** argv);
    static AEDesc emptyReply();
    explicit EventSocket(Handler handler);

    bool isOpen() const { return mReadable.isEnabled(); }

Q_SIGNALS:
    /// The other side has closed, or what it says makes no sense. Nothing comes or goes after that.
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

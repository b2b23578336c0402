// SPDX-License-Identifier: MIT
// What goes over a socket between two processes: frames of a header and a flattened descriptor. The form is our own; numbers are
// big-endian:
//
//   "QAE2" kind:u8 flags:u8 0:u16 id:u32 status:i32 size:u32 bytes
//
// One request is under way on a connection at a time as far as replies are concerned; a reply carries the id of its event.
#pragma once

#include "platform/ae/AEDesc.h"
#include "platform/base/Result.h"

namespace quoddle {

struct AEFrame {
    enum class Kind : std::uint8_t { Event = 1, Reply = 2 };
    static constexpr std::uint8_t kWantsReply = 0x01;
    static constexpr std::size_t kHeaderSize = 20;

    Kind kind = Kind::Event;
    std::uint8_t flags = 0;
    std::uint32_t id = 0;
    OSStatus status = noErr; // of the delivery; replies only
    std::string payload;     // a flattened descriptor; empty in a reply without one

    /// Header and payload in one.
    std::string bytes() const;
};

/// Takes a stream apart. Memory grows with what has arrived, not with what a header claims.
class AEFrameReader {
public:
    void append(std::string_view bytes) { mBuffer += bytes; }
    /// Whether there was a complete frame. -1702 when the stream makes no sense; nothing more is to be read then.
    Result<bool, OSStatus> next(AEFrame& frame);
    /// Bytes that wait for the rest of their frame.
    std::size_t size() const { return mBuffer.size(); }
    /// A frame has begun and is not complete.
    bool isInside() const { return !mBuffer.empty(); }

private:
    std::string mBuffer;
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Frames on a socket between two processes: a header and a flattened descriptor. The format is our own; numbers are big-endian:
//
//   "QAE2" kind:u8 flags:u8 0:u16 id:u32 status:i32 size:u32 bytes
//
// A sender that waits for replies sends one request at a time on a connection; a reply has the id of its event.
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
    OSStatus status = noErr; // the delivery's status; in replies only
    std::string payload;     // a flattened descriptor; empty in a reply without a descriptor

    /// The header and the payload as they are sent.
    std::string bytes() const;
};

/// Splits a stream into frames. Memory grows with the bytes that have arrived, not with the size that a header claims.
class AEFrameReader {
public:
    void append(std::string_view bytes) { mBuffer += bytes; }
    /// True when there was a complete frame. -1702 when the stream is malformed; it must not be read further.
    Result<bool, OSStatus> next(AEFrame& frame);
    /// The number of bytes of the incomplete frame.
    std::size_t size() const { return mBuffer.size(); }
    /// Whether a frame has begun and is not complete.
    bool isInside() const { return !mBuffer.empty(); }

private:
    std::string mBuffer;
};

} // namespace quoddle

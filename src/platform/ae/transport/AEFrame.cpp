// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AEFrame.h"

#include "platform/ae/AEFlatten.h"

#include <utility>

namespace quoddle {

namespace {

constexpr FourCharCode kMagic = "QAE2"_4cc;

void put32(std::string& bytes, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift & 0xFF);
}

std::uint32_t get32(std::string_view bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8 | static_cast<std::uint8_t>(bytes[at + i]);
    return value;
}

constexpr std::size_t kKindAt = 4, kFlagsAt = 5, kIDAt = 8, kStatusAt = 12, kSizeAt = 16;

bool isKind(char byte) {
    return byte == static_cast<char>(AEFrame::Kind::Event) || byte == static_cast<char>(AEFrame::Kind::Reply);
}

} // namespace

std::string AEFrame::bytes() const {
    std::string bytes;
    bytes.reserve(kHeaderSize + payload.size());
    put32(bytes, kMagic);
    bytes += static_cast<char>(kind);
    bytes += static_cast<char>(flags);
    bytes.append(2, '\0');
    put32(bytes, id);
    put32(bytes, static_cast<std::uint32_t>(status));
    put32(bytes, static_cast<std::uint32_t>(payload.size()));
    return bytes += payload;
}

Result<bool, OSStatus> AEFrameReader::next(AEFrame& frame) {
    for (std::size_t i = 0; i < std::min<std::size_t>(mBuffer.size(), 4); ++i) // streams of another format are refused at their first bytes
        if (static_cast<std::uint8_t>(mBuffer[i]) != (kMagic >> (24 - 8 * i) & 0xFF))
            return Failure{errAECorruptData};
    if (mBuffer.size() < AEFrame::kHeaderSize)
        return false;
    const std::size_t size = get32(mBuffer, kSizeAt);
    if (!isKind(mBuffer[kKindAt]) || size > kAEMaxSize)
        return Failure{errAECorruptData};
    if (mBuffer.size() - AEFrame::kHeaderSize < size)
        return false;
    frame.kind = static_cast<AEFrame::Kind>(mBuffer[kKindAt]);
    frame.flags = static_cast<std::uint8_t>(mBuffer[kFlagsAt]);
    frame.id = get32(mBuffer, kIDAt);
    frame.status = static_cast<OSStatus>(get32(mBuffer, kStatusAt));
    // The frame takes the buffer itself, so that a large payload is not in memory twice and its room is freed with it.
    std::string rest = mBuffer.substr(AEFrame::kHeaderSize + size);
    mBuffer.resize(AEFrame::kHeaderSize + size);
    mBuffer.erase(0, AEFrame::kHeaderSize);
    frame.payload = std::exchange(mBuffer, std::move(rest));
    return true;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Numbers that the image reader and the image writer share. All integers of the stream are big-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quoddle::image {

constexpr std::string_view kMagic = "FasdUAS ";
constexpr std::string_view kVersion = "1.10"; // written twice
constexpr std::string_view kTrailerMark = "\xFA\xDE\xDE\xAD";

enum RecordKind : std::uint8_t {
    kNil = 0x01,
    kListCell = 0x02,
    kSmallInteger = 0x03,
    kOldBlock = 0x04,
    kRecordCell = 0x06,
    kInteger = 0x07,
    kReal = 0x08,
    kBoolean = 0x09,
    kCode = 0x0A,
    kIdentifier = 0x0B,
    kOldText = 0x0C,
    kNode = 0x0D,
    kBlock = 0x0E,
    kData = 0x0F,
    kVector = 0x10,
    kRaw = 0x11,
    kLongData = 0x12,
    kLongRaw = 0x13,
};

constexpr std::uint8_t kIdentifierTag = 0x30;
/// Bound on the nesting of records; real scripts stay below 200.
constexpr std::size_t kMaximumDepth = 1000;
/// Bound on the list items that are held more than once because lists share a tail; no real script has any.
constexpr std::size_t kMaximumCopied = 1 << 20;

} // namespace quoddle::image

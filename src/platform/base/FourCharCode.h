// SPDX-License-Identifier: MIT
// Four-character codes: the names that Apple events, descriptors and compiled scripts use for everything.
// A code is a 32-bit number whose most significant byte is the first character; characters are Mac Roman bytes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quoddle {

using FourCharCode = std::uint32_t;
using DescType = FourCharCode;
using AEKeyword = FourCharCode;
using AEEventClass = FourCharCode;
using AEEventID = FourCharCode;

/// The code of up to four bytes; a shorter text is padded with blanks on the right, a longer one is cut.
constexpr FourCharCode fourCharCode(std::string_view bytes) {
    FourCharCode code = 0;
    for (std::size_t i = 0; i < 4; ++i)
        code = code << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0x20u);
    return code;
}

/// "syso"_4cc. Codes with a byte beyond ASCII are written with an escape: "scr\xc4"_4cc.
consteval FourCharCode operator""_4cc(const char* bytes, std::size_t count) {
    return fourCharCode({bytes, count});
}

/// The four bytes of a code, in order, unchanged (they may be any bytes).
inline std::string bytesOf(FourCharCode code) {
    return {static_cast<char>(code >> 24), static_cast<char>(code >> 16), static_cast<char>(code >> 8), static_cast<char>(code)};
}

} // namespace quoddle

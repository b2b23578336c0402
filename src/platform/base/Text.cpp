// SPDX-License-Identifier: MIT
#include "platform/base/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <unicode/uchar.h>
#include <unicode/ustring.h>

namespace quoddle {

namespace {

// The upper half of Mac Roman, 0x80 to 0xFF, as published by Unicode (MAPPINGS/VENDORS/APPLE/ROMAN.TXT).
constexpr std::u16string_view kMacRomanUpper = u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
                                               u"¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
static_assert(kMacRomanUpper.size() == 128);

// Format characters that are a part of words in some scripts.
constexpr char16_t kNonJoiner = 0x200C, kJoiner = 0x200D;

} // namespace

std::u16string utf16FromUTF8(std::string_view bytes) {
    std::u16string text(bytes.size(), u'\0'); // UTF-16 never needs more units than UTF-8 needs bytes
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t length = 0;
    u_strFromUTF8WithSub(text.data(), static_cast<std::int32_t>(text.size()), &length, bytes.data(),
                         static_cast<std::int32_t>(bytes.size()), 0xFFFD, nullptr, &status);
    text.resize(U_FAILURE(status) ? 0 : static_cast<std::size_t>(length));
    return text;
}

std::string utf8FromUTF16(std::u16string_view text) {
    std::string bytes(text.size() * 3, '\0');
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t length = 0;
    u_strToUTF8WithSub(bytes.data(), static_cast<std::int32_t>(bytes.size()), &length, text.data(), static_cast<std::int32_t>(text.size()),
                       0xFFFD, nullptr, &status);
    bytes.resize(U_FAILURE(status) ? 0 : static_cast<std::size_t>(length));
    return bytes;
}

bool isValidUTF8(std::string_view bytes) {
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t length = 0;
    u_strFromUTF8(nullptr, 0, &length, bytes.data(), static_cast<std::int32_t>(bytes.size()), &status);
    return status == U_BUFFER_OVERFLOW_ERROR || U_SUCCESS(status);
}

std::string withoutControls(std::string_view text) {
    std::u16string units = utf16FromUTF8(text);
    std::replace_if(
        units.begin(), units.end(), [](char16_t c) { return u_iscntrl(c) && c != kNonJoiner && c != kJoiner; }, u'?');
    return utf8FromUTF16(units);
}

std::u16string utf16FromMacRoman(std::string_view bytes) {
    std::u16string text;
    text.reserve(bytes.size());
    for (char c : bytes) {
        auto byte = static_cast<unsigned char>(c);
        text += byte < 0x80 ? static_cast<char16_t>(byte) : kMacRomanUpper[byte - 0x80];
    }
    return text;
}

std::string macRomanFromUTF16(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (char16_t c : text) {
        auto at = c < 0x80 ? std::u16string_view::npos : kMacRomanUpper.find(c);
        bytes += c < 0x80 ? static_cast<char>(c) : at == std::u16string_view::npos ? '?' : static_cast<char>(0x80 + at);
    }
    return bytes;
}

} // namespace quoddle

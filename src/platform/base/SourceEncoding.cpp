// SPDX-License-Identifier: MIT
#include "platform/base/SourceEncoding.h"

#include "platform/base/Text.h"

#include <algorithm>
#include <array>
#include <memory>
#include <unicode/ucnv.h>

namespace quoddle {

namespace {

enum class ByteOrder { Unknown, Big, Little };

std::u16string utf16FromUTF16Bytes(std::string_view bytes, bool bigEndian) {
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto first = static_cast<unsigned char>(bytes[2 * i]);
        auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
        text[i] = static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
    }
    return text;
}

/// The byte order of UTF-16 without a mark: the text is mostly ASCII, so the high bytes are zero and the low ones are not.
ByteOrder byteOrderOf(std::string_view bytes) {
    constexpr std::size_t kLooked = 1024;
    const std::string_view looked = bytes.substr(0, kLooked);
    if (looked.size() < 4 || bytes.size() % 2 != 0)
        return ByteOrder::Unknown;
    std::array<std::size_t, 2> zeros{};
    for (std::size_t i = 0; i < looked.size(); ++i)
        zeros[i % 2] += looked[i] == '\0';
    const auto isHigh = [&](std::size_t one, std::size_t other) { return zeros[one] * 4 > looked.size() && zeros[other] == 0; };
    return isHigh(0, 1) ? ByteOrder::Big : isHigh(1, 0) ? ByteOrder::Little : ByteOrder::Unknown;
}

/// A single byte of the Japanese encoding that stands for a sign other than in Shift-JIS; 0 for other bytes.
char16_t macJapaneseSign(unsigned char byte) {
    switch (byte) {
    case 0x80:
        return u'\\';
    case 0xA0:
        return u'\u00A0';
    case 0xFD:
        return u'\u00A9';
    case 0xFE:
        return u'\u2122';
    case 0xFF:
        return u'\u2026';
    default:
        return 0;
    }
}

bool isLead(unsigned char byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

bool isTrail(unsigned char byte) {
    return byte >= 0x40 && byte <= 0xFC && byte != 0x7F;
}

/// Whether the bytes are valid and have at least one pair that is a sign or kana in Japanese and two capitals with accents, which nobody
/// writes, in Mac Roman.
bool isJapanese(std::string_view bytes) {
    bool hasKana = false;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if (!isLead(byte))
            continue;
        const auto trail = static_cast<unsigned char>(i + 1 < bytes.size() ? bytes[i + 1] : '\0');
        if (!isTrail(trail))
            return false;
        hasKana = hasKana || (byte <= 0x83 && trail >= 0x80);
        ++i;
    }
    return hasKana;
}

/// Empty when the converter is missing.
std::u16string utf16FromJapanese(std::string_view bytes) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open("ibm-943_P15A-2003", &status), &ucnv_close);
    if (U_FAILURE(status))
        return {};
    std::u16string text;
    const auto convert = [&](std::string_view part) {
        const std::size_t before = text.size();
        text.resize(before + part.size()); // no pair becomes more than two units
        const auto length = ucnv_toUChars(converter.get(), text.data() + before, static_cast<std::int32_t>(part.size()), part.data(),
                                          static_cast<std::int32_t>(part.size()), &status);
        status = U_ZERO_ERROR;
        text.resize(before + static_cast<std::size_t>(std::clamp<std::int32_t>(length, 0, static_cast<std::int32_t>(part.size()))));
    };
    std::size_t begin = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if (const char16_t sign = macJapaneseSign(byte)) {
            convert(bytes.substr(begin, i - begin));
            text += sign;
            begin = i + 1;
        } else if (isLead(byte)) {
            ++i;
        }
    }
    convert(bytes.substr(begin));
    return text;
}

} // namespace

std::u16string utf16FromSourceBytes(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF"))
        return utf16FromUTF8(bytes.substr(3));
    if (bytes.starts_with("\xFF\xFE"))
        return utf16FromUTF16Bytes(bytes.substr(2), false);
    if (bytes.starts_with("\xFE\xFF"))
        return utf16FromUTF16Bytes(bytes.substr(2), true);
    if (const ByteOrder order = byteOrderOf(bytes); order != ByteOrder::Unknown)
        return utf16FromUTF16Bytes(bytes, order == ByteOrder::Big);
    if (isValidUTF8(bytes))
        return utf16FromUTF8(bytes);
    if (isJapanese(bytes))
        if (std::u16string text = utf16FromJapanese(bytes); !text.empty())
            return text;
    return utf16FromMacRoman(bytes);
}

} // namespace quoddle

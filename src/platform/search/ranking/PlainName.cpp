// SPDX-License-Identifier: MIT
#include "platform/search/ranking/PlainName.h"

#include "platform/base/Text.h"

#include <algorithm>
#include <cstring>

namespace quoddle {

namespace {

/// A vector of 16 bytes. Comparing two gives 0xFF in each byte that matches and 0 in the others.
using Bytes [[gnu::vector_size(16)]] = unsigned char;

constexpr char kForeign = '\x80'; // stands for a unit that is not ASCII

/// Characters beyond ASCII that match one or several ASCII characters when case is ignored: sharp s as "ss", the Kelvin sign as "k",
/// ligatures. Source: CaseFolding.txt of the Unicode character database, kinds C and F. The line separators are included, because "." does
/// not match them.
constexpr std::u16string_view kSpecial = u"\u0085\u00DF\u0130\u0149\u017F\u01F0\u1E96\u1E97\u1E98\u1E99\u1E9A\u1E9E\u2028\u2029\u212A"
                                         u"\uFB00\uFB01\uFB02\uFB03\uFB04\uFB05\uFB06";

bool isPlainUnit(char16_t unit) {
    return unit < 0x7F ? unit >= u' ' : unit != 0x7F && !std::binary_search(kSpecial.begin(), kSpecial.end(), unit);
}

/// Converts an ASCII name to lower case, sixteen characters at a time. The last sixteen may overlap those before.
void putInSmallLetters(std::string_view name, char* small) {
    if (name.size() < sizeof(Bytes)) {
        std::transform(name.begin(), name.end(), small, [](char c) { return static_cast<char>(foldedASCII(static_cast<char16_t>(c))); });
        return;
    }
    for (std::size_t at = 0, last = name.size() - sizeof(Bytes);; at = std::min(at + sizeof(Bytes), last)) {
        Bytes bytes;
        std::memcpy(&bytes, name.data() + at, sizeof bytes);
        bytes |= Bytes((bytes >= 'A') & (bytes <= 'Z')) & 0x20;
        std::memcpy(small + at, &bytes, sizeof bytes);
        if (at == last)
            return;
    }
}

} // namespace

bool isPlainName(std::string_view name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto byte = static_cast<unsigned char>(name[i]);
        char16_t unit = byte;
        if (byte >= 0xE0 && byte < 0xF0 && i + 2 < name.size())
            unit = static_cast<char16_t>((byte & 0x0F) << 12 | (name[i + 1] & 0x3F) << 6 | (name[i + 2] & 0x3F));
        else if (byte >= 0xC0 && byte < 0xE0 && i + 1 < name.size())
            unit = static_cast<char16_t>((byte & 0x1F) << 6 | (name[i + 1] & 0x3F));
        else if (byte >= 0x80) // a continuation, or a character of four bytes, none of which is special
            continue;
        if (!isPlainUnit(unit))
            return false;
    }
    return true;
}

std::string_view PlainName::padded(std::size_t size) {
    std::memset(mUnits + size, 0, kPadding);
    return {mUnits, size};
}

std::optional<std::string_view> PlainName::ofPlain(std::string_view name, bool isASCII) {
    if (name.size() > kLongest)
        return {};
    if (isASCII) {
        putInSmallLetters(name, mUnits);
        return padded(name.size());
    }
    char* end = mUnits;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            *end++ = static_cast<char>(foldedASCII(byte));
        } else if (byte >= 0xC0) { // the first byte of a character
            *end++ = kForeign;
            if (byte >= 0xF0) // the character has two UTF-16 units
                *end++ = kForeign;
        }
    }
    return padded(static_cast<std::size_t>(end - mUnits));
}

std::optional<std::string_view> PlainName::of(std::u16string_view name) {
    if (name.size() > kLongest || !std::all_of(name.begin(), name.end(), &isPlainUnit))
        return {};
    std::transform(name.begin(), name.end(), mUnits,
                   [](char16_t unit) { return unit < 0x80 ? static_cast<char>(foldedASCII(unit)) : kForeign; });
    return padded(name.size());
}

} // namespace quoddle

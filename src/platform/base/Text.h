// SPDX-License-Identifier: MIT
// Conversions between UTF-16, the text of the whole platform, and the byte encodings of files and terminals.
#pragma once

#include <string>
#include <string_view>

namespace quoddle {

/// Never fails; ill-formed input becomes U+FFFD.
std::u16string utf16FromUTF8(std::string_view bytes);
/// Lone surrogates become U+FFFD.
std::string utf8FromUTF16(std::u16string_view text);
bool isValidUTF8(std::string_view bytes);
/// The text in UTF-8 with '?' for each control character, so that names from elsewhere do not control a terminal.
std::string withoutControls(std::string_view text);

std::u16string utf16FromMacRoman(std::string_view bytes);
/// Characters that Mac Roman lacks become '?'.
std::string macRomanFromUTF16(std::u16string_view text);

/// The small letter for an ASCII capital; any other unit unchanged.
constexpr char16_t foldedASCII(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

} // namespace quoddle

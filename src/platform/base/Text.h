// SPDX-License-Identifier: MIT
// UTF-16 is the text of the whole platform; these are its borders with the byte encodings that files and terminals use.
#pragma once

#include <string>
#include <string_view>

namespace quoddle {

/// Ill-formed input becomes U+FFFD; never fails.
std::u16string utf16FromUTF8(std::string_view bytes);
/// Lone surrogates become U+FFFD.
std::string utf8FromUTF16(std::u16string_view text);
bool isValidUTF8(std::string_view bytes);

std::u16string utf16FromMacRoman(std::string_view bytes);
/// Characters that Mac Roman lacks become '?'.
std::string macRomanFromUTF16(std::u16string_view text);

/// The small letter for a capital of ASCII; anything else stays as it is.
constexpr char16_t foldedASCII(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

/// Text of a source file: a byte-order mark decides, else valid UTF-8 is taken as such, else it is Mac Roman.
std::u16string utf16FromSourceBytes(std::string_view bytes);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The encodings of text files that people bring along from other systems.
#pragma once

#include <string>
#include <string_view>

namespace quoddle {

/// Decodes a source file. The byte-order mark decides; without one the text is UTF-16 when nearly every second byte is zero, UTF-8 when it
/// is valid, the Japanese encoding of old systems (Shift-JIS with a few signs of its own) when it is valid and has kana or Japanese signs,
/// and Mac Roman otherwise.
std::u16string utf16FromSourceBytes(std::string_view bytes);

} // namespace quoddle

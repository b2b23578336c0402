// SPDX-License-Identifier: MIT
// How single values are written in the language's source: texts, whole numbers (reals: base/RealText.h), identifiers, dates, raw codes.
//
// Used by the printer for scripts and by the language for showing results in source form; so it knows nothing of trees or of values.
#pragma once

#include "platform/base/FourCharCode.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quoddle::syntax::sourcetext {

/// In double quotes; quotes and backslashes escaped, everything else as it is, line ends too.
std::u16string quoted(std::u16string_view text);

std::u16string integer(std::int64_t value);
/// 1st, 2nd, 3rd, 4th, 11th, -1th.
std::u16string ordinal(std::int64_t value);

/// Whether `name` is an identifier without bars: a letter, then letters, digits and underscores. Letters are those of Mac Roman.
bool isPlainIdentifier(std::u16string_view name);
/// The name of an identifier, in bars when it could not be read without: `barred` when it means something else here (a reserved word or a
/// term). `key` and `spelling` as stored in compiled scripts (UTF-8, or Mac Roman in old ones).
std::u16string identifier(std::string_view key, std::string_view spelling, bool barred);
/// Text of a stored name: valid UTF-8 is taken as such, anything else is Mac Roman.
std::u16string nameText(std::string_view bytes);

/// A code in chevrons: rawCode(u"class", "abcd") is «class abcd». The bytes are shown as Mac Roman.
std::u16string rawCode(std::u16string_view kind, std::string_view bytes);
/// «data» with a type and its bytes in hexadecimal digits.
std::u16string rawData(std::string_view typeAndBytes);

} // namespace quoddle::syntax::sourcetext

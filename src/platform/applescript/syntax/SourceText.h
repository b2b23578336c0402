// SPDX-License-Identifier: MIT
// How single values are written in source: texts, whole numbers (for reals see base/RealText.h), identifiers, dates, raw codes.
//
// Knows nothing of trees or values, because both the printer of scripts and the display of results use it.
#pragma once

#include "platform/base/FourCharCode.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quoddle::syntax::sourcetext {

/// A text in double quotes. Quotes and backslashes are escaped, all else, line ends too, stays as it is.
std::u16string quoted(std::u16string_view text);

std::u16string integer(std::int64_t value);
/// A number as an ordinal: 1st, 2nd, 3rd, 4th, 11th, -1th.
std::u16string ordinal(std::int64_t value);

/// Whether `name` can be an identifier without bars: a letter, then letters, digits and underscores. Letters are those of Mac Roman.
bool isPlainIdentifier(std::u16string_view name);
/// The name of an identifier, in bars when it could not be read without. `barred` tells that the name means something else here (a reserved
/// word or a term). `key` and `spelling` are as stored in compiled scripts (UTF-8, or Mac Roman in old ones).
std::u16string identifier(std::string_view key, std::string_view spelling, bool barred);
/// The text of a stored name: valid UTF-8 is taken as UTF-8, anything else as Mac Roman.
std::u16string nameText(std::string_view bytes);

/// A code in chevrons: rawCode(u"class", "abcd") is «class abcd». The bytes are shown as Mac Roman.
std::u16string rawCode(std::u16string_view kind, std::string_view bytes);
/// «data» with a type and its bytes in hexadecimal digits.
std::u16string rawData(std::string_view typeAndBytes);

} // namespace quoddle::syntax::sourcetext

// SPDX-License-Identifier: MIT
// What values look like inside files: texts in their encodings, numbers in the byte order of the network, everything else flattened.
//
// Plain text is UTF-8, as everywhere on this system; reading also takes Mac Roman and a byte-order mark. "Unicode text" is UTF-16.
#pragma once

#include "platform/ae/AEDesc.h"

namespace quoddle::additions {

/// The bytes of a value written as a class; 0 means the value's own. Empty when it cannot be made into that.
std::optional<std::string> fileBytesOf(const AEDesc& value, DescType asClass);
/// The value of bytes read as a class; 0 means text. Numbers that follow one another become a list; of lists and records the first one is
/// taken. `used`, when given, is how many bytes the value takes. Empty when the bytes are no such value.
std::optional<AEDesc> valueOfFileBytes(std::string_view bytes, DescType asClass, std::size_t* used = nullptr);

/// Whether texts of the class are UTF-16 in files.
bool isWideText(DescType asClass);
/// The size of one value of a class that has a fixed size, else 0.
std::size_t fixedSizeOf(DescType asClass);

} // namespace quoddle::additions

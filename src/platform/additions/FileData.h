// SPDX-License-Identifier: MIT
// The form of values in files: texts in their encodings, numbers in network byte order, all other values flattened.
//
// Plain text is written as UTF-8, as is usual on this system; reading also accepts Mac Roman and a byte-order mark. "Unicode text" is
// UTF-16.
#pragma once

#include "platform/ae/AEDesc.h"

namespace quoddle::additions {

/// The bytes for a value as the class; 0 stands for the value's own class. nullopt when it cannot be coerced.
std::optional<std::string> fileBytesOf(const AEDesc& value, DescType asClass);
/// Reads bytes as a value of the class; 0 stands for text. Several numbers become a list; of several lists or records the first is taken.
/// `used` (may be null) becomes the number of bytes that the value takes. nullopt when the bytes are no such value.
std::optional<AEDesc> valueOfFileBytes(std::string_view bytes, DescType asClass, std::size_t* used = nullptr);

/// Whether texts of the class are UTF-16 in files.
bool isWideText(DescType asClass);
/// The size in bytes of one value of a class with a fixed size, else 0.
std::size_t fixedSizeOf(DescType asClass);

} // namespace quoddle::additions

// SPDX-License-Identifier: MIT
// Coercion of descriptors by one table of rows (from, to, function); the first row that matches is used.
// The table covers: texts among each other, numbers among each other, boolean, text and number, type and enumeration codes and text, a
// scalar as a list of one and back, records under other types, file URL, alias and text path, dates, and "****" (unchanged). The scripting
// component adds the coercions of the language (text of references, text item delimiters, the user's number formats).
#pragma once

#include "platform/ae/AEDesc.h"

namespace quoddle {

/// noErr, or -1700 with `result` unchanged. `result` may be `desc` itself.
OSStatus AECoerceDesc(const AEDesc& desc, DescType toType, AEDesc& result);
/// The coerced descriptor; nullopt where AECoerceDesc() returns -1700.
std::optional<AEDesc> AECoerced(const AEDesc& desc, DescType toType);

} // namespace quoddle

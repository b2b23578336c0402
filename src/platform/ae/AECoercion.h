// SPDX-License-Identifier: MIT
// Coercion of descriptors: one table of (from, to, function), read from the top; the first row that matches decides.
// Covered: texts among each other, numbers among each other, boolean, text and number, type and enumeration codes and text, a scalar as a
// list of one and back, records under other types, file URL, alias and text path, dates, and "****" (as it is). What the language adds
// (text of references, text item delimiters, number formats of the user) is the scripting component's affair.
#pragma once

#include "platform/ae/AEDesc.h"

namespace quoddle {

/// noErr, or -1700 with `result` untouched. `result` may be `desc` itself.
OSStatus AECoerceDesc(const AEDesc& desc, DescType toType, AEDesc& result);
/// The same as a value; empty where the status would be -1700.
std::optional<AEDesc> AECoerced(const AEDesc& desc, DescType toType);

} // namespace quoddle

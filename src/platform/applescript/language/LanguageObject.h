// SPDX-License-Identifier: MIT
// The AppleScript object: constants, text item delimiters, progress properties.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

/// Made once for a machine, which keeps it.
Script* makeLanguageObject(Machine& machine);

/// The delimiters as they stand, each a view of a text that the AppleScript object holds. Never empty: no delimiter is one empty text.
std::vector<std::u16string_view> textItemDelimiters(Machine& machine);

} // namespace quoddle::language

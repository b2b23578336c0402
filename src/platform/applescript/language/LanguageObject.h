// SPDX-License-Identifier: MIT
// The AppleScript object: constants, text item delimiters, progress properties.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

using machine::Machine;
using machine::Script;

/// Made once for a machine, which keeps it.
Script* makeLanguageObject(Machine& machine);

/// The delimiters that are set, references followed. Never empty: no delimiter is one empty text.
std::vector<std::u16string> textItemDelimiters(Machine& machine);

} // namespace quoddle::language

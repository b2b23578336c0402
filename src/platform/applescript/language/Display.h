// SPDX-License-Identifier: MIT
// Values as source text, and codes as words.
#pragma once

#include "platform/applescript/machine/Machine.h"
#include "platform/base/OSStatus.h"

namespace quoddle::language {

using machine::Machine;
using machine::Value;

/// As source: texts in quotes, lists in braces. What is nested too deeply, or longer than 67 million characters, ends in "…".
std::u16string display(Machine& machine, Value value);
/// As source, for a message: what is longer than a thousand characters is cut off and ends in "…".
std::u16string inMessage(Machine& machine, Value value);
/// As a person reads it: texts without quotes, lists and records without braces.
std::u16string humanDisplay(Machine& machine, Value value);
/// Whether the language or the Standard Additions have a property of the code.
bool isKnownProperty(FourCharCode code);
/// The words for a class, a property, a constant or a command; in chevrons when no dictionary has them.
std::u16string termFor(Value value);

/// Never empty; unknown numbers get the general text.
std::u16string messageFor(OSStatus number);
/// The text that names what it is about: the offending object and the expected type, as messages show them.
std::u16string messageFor(OSStatus number, std::u16string_view object, std::u16string_view type);

} // namespace quoddle::language

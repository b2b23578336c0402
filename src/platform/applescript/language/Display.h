// SPDX-License-Identifier: MIT
// Values, codes and status numbers in words.
#pragma once

#include "platform/applescript/machine/Machine.h"
#include "platform/base/OSStatus.h"

namespace quoddle::language {

using machine::Machine;
using machine::Value;

/// A value as source: texts in quotes, lists in braces. What is nested too deeply, or longer than 67 million characters, ends in "…".
std::u16string display(Machine& machine, Value value);
/// A value as source, for a message. Text beyond a thousand characters is cut off and ends in "…".
std::u16string inMessage(Machine& machine, Value value);
/// A value for people: texts without quotes, lists and records without braces.
std::u16string humanDisplay(Machine& machine, Value value);
/// Whether the language or the Standard Additions have a property of the code.
bool isKnownProperty(FourCharCode code);
/// The words for a class, a property, a constant or a command, or the code in chevrons when no dictionary has words.
std::u16string termFor(Value value);

/// The text for a status number when nothing more is known. Never empty; unknown numbers get a general text.
std::u16string messageFor(OSStatus number);
/// The text with the offending object and the expected type put in, which are given as messages show them.
std::u16string messageFor(OSStatus number, std::u16string_view object, std::u16string_view type);

} // namespace quoddle::language

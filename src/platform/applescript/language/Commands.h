// SPDX-License-Identifier: MIT
// Commands of the language itself; all others go to the host.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

using machine::Argument;
using machine::Machine;
using machine::Script;
using machine::Value;

/// Performs a command for which no script has a handler. Failure when an error was raised.
Value performCommand(Machine& machine, Value name, Value direct, std::span<const Argument> arguments, bool continues);
/// Calls a handler of something that is not a script: an application, or a value that has no handlers.
Value callElsewhere(Machine& machine, Value target, Value name, std::span<const Value> arguments);

/// Send "get" and "set" to the application that a specifier belongs to. `wanted` is the class that the value is asked for as; the
/// application may answer with another one. Undefined means any.
Value getFromApplication(Machine& machine, Value specifier, Value wanted = {});
bool setInApplication(Machine& machine, Value specifier, Value value);

bool setParent(Machine& machine, Script* script, Value parent);
/// For "character id 97": a text of one code point or of a list of them.
Value textFromCodePoints(Machine& machine, Value points);

} // namespace quoddle::language

// SPDX-License-Identifier: MIT
// Commands: those of the language itself, and the way out to the host for all others.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

using machine::Argument;
using machine::Machine;
using machine::Script;
using machine::Value;

/// A command that no handler of a script took. Failure when an error was raised.
Value performCommand(Machine& machine, Value name, Value direct, std::span<const Argument> arguments, bool continues);
/// A call of a handler of something that is no script: an application, or a value that has no handlers.
Value callElsewhere(Machine& machine, Value target, Value name, std::span<const Value> arguments);

/// "get" and "set" sent to the application that a specifier belongs to.
Value getFromApplication(Machine& machine, Value specifier);
bool setInApplication(Machine& machine, Value specifier, Value value);

bool setParent(Machine& machine, Script* script, Value parent);
/// "character id 97": a text of one code point or of a list of them.
Value textFromCodePoints(Machine& machine, Value points);

} // namespace quoddle::language

// SPDX-License-Identifier: MIT
// Properties and elements of values: reading, setting, counting, and following references to what they name.
//
// Like everywhere in the language: failure or false means that an error was raised in the machine.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

using machine::Evaluate;
using machine::Machine;
using machine::Script;
using machine::Specifier;
using machine::Value;

/// Every, a range or a filter: a specifier of one of these forms names many things.
bool isMany(Specifier::Form form);
/// A specifier that belongs to this machine's values, not to an application, can be followed without asking anybody.
bool isLocal(Value container);
/// The value behind a specifier, references included; any other value as it is.
Value follow(Machine& machine, Value value);
/// The sides of an operator, the left one first. False when one of them failed.
bool followBoth(Machine& machine, Value& left, Value& right);
/// "get": a raw specifier becomes what it names; a reference value and any other value stay. `how` Locally leaves specifiers of applications alone.
Value evaluate(Machine& machine, Value value, Evaluate how);

Value getProperty(Machine& machine, Value container, Value key, Evaluate how);
Value getElement(Machine& machine, Value container, Value elementClass, Value index, Evaluate how);
/// A specifier of one of the less frequent forms, from its operands in stack order.
Value makeSpecifier(Machine& machine, Specifier::Form form, const Value* operands);
Value makeReference(Machine& machine, Value value);

bool setProperty(Machine& machine, Value container, Value key, Value value);
bool setElement(Machine& machine, Value container, Value elementClass, Value index, Value value);
bool setEnd(Machine& machine, Value container, Value value);
bool setSpecifier(Machine& machine, Value specifier, Value value);

Value count(Machine& machine, Value value);
/// Items, in a fresh list.
Value deepCopy(Machine& machine, Value value);

/// Made once for a machine, which keeps it.
Script* makeLanguageObject(Machine& machine);

/// The delimiters that are set, references followed. Never empty: no delimiter is one empty text.
std::vector<std::u16string> textItemDelimiters(Machine& machine);

} // namespace quoddle::language

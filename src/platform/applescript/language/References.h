// SPDX-License-Identifier: MIT
// Properties and elements of values: reading, setting, counting, and following references to what they name; and the AppleScript object
// with its constants, text item delimiters and progress properties.
//
// Failure or false means that an error was raised in the machine.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

using machine::Evaluate;
using machine::Machine;
using machine::Script;
using machine::Specifier;
using machine::Value;

/// The class of "before x" and "after x", which name a place and no element.
inline constexpr FourCharCode kInsertionLocation = "insl"_4cc;

/// Whether a specifier of the form names many things: every, a range or a filter.
bool isMany(Specifier::Form form);
/// Whether a property of many things belongs to the list of them, as in "length of words of t", and not to each of them.
bool isPropertyOfList(Value key);
/// Whether a specifier belongs to values of this machine and not to an application, so that it can be followed without asking anybody.
bool isLocal(Value container);
/// The value behind a specifier or a reference value; any other value as it is.
Value follow(Machine& machine, Value value);
/// Follows the sides of an operator, the left one first. False when one of them failed.
bool followBoth(Machine& machine, Value& left, Value& right);
/// For "get": a raw specifier becomes what it names; a reference value and any other value stay. With Evaluate::Locally specifiers of
/// applications stay, too.
Value evaluate(Machine& machine, Value value, Evaluate how);

Value getProperty(Machine& machine, Value container, Value key, Evaluate how);
Value getElement(Machine& machine, Value container, Value elementClass, Value index, Evaluate how);
/// A specifier of any form, from its operands in stack order.
Value makeSpecifier(Machine& machine, Specifier::Form form, const Value* operands);
Value makeReference(Machine& machine, Value value);

bool setProperty(Machine& machine, Value container, Value key, Value value);
bool setElement(Machine& machine, Value container, Value elementClass, Value index, Value value);
bool setEnd(Machine& machine, Value container, Value value);
bool setSpecifier(Machine& machine, Value specifier, Value value);

Value count(Machine& machine, Value value);
/// A copy of a value and of all that it holds.
Value deepCopy(Machine& machine, Value value);

/// The version of the language that scripts see and may ask for.
constexpr std::string_view kVersion = "2.8";

/// Makes the AppleScript object. Called once for a machine, which keeps the object.
Script* makeLanguageObject(Machine& machine);

/// The text item delimiters that are set, with references followed. Never empty: no delimiter is one empty text.
std::vector<std::u16string> textItemDelimiters(Machine& machine);

} // namespace quoddle::language

// SPDX-License-Identifier: MIT
// "as": making a value of another class, and telling what class a value has.
#pragma once

#include "platform/applescript/machine/Machine.h"

#include <optional>

namespace quoddle::language {

using machine::Machine;
using machine::Text;
using machine::Value;

/// `wanted` is a class, or a list of classes of which the first that fits is taken. Failure: -1700.
Value coerce(Machine& machine, Value value, Value wanted);
/// Without raising: failure when it cannot be done.
Value tryCoerce(Machine& machine, Value value, FourCharCode wanted);
/// What `class of` answers.
Value classOf(Value value);
/// True when the value belongs to the class: "number 1 of x" finds integers and reals.
bool isOfClass(Value value, FourCharCode wanted);
/// The value as a whole number, as an index or a part of a date needs one. False when it is none; the error is raised.
bool wholeOf(Machine& machine, Value value, std::int64_t& whole);
/// The text of a value where there is one; null otherwise. Nothing is raised.
Text* textOf(Machine& machine, Value value);
/// Raises -1700: Can’t make … into type ….
Value cannotMake(Machine& machine, Value value, FourCharCode wanted);
/// Raises the error of a value that would be longer than values may be.
Value tooLarge(Machine& machine);

/// The amount of a measure; nothing for any other value.
std::optional<double> amountOf(Value value);
/// A measure of a number, or of a measure of the same kind (length, area, cubic or liquid volume, weight, temperature). Failure, without an error raised, for anything
/// else and when `unit` is no unit.
Value makeMeasure(Machine& machine, Value from, FourCharCode unit);

} // namespace quoddle::language

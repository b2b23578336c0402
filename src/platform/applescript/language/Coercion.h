// SPDX-License-Identifier: MIT
// "as": making a value of another class, telling what class a value has, and the conversion of weights and measures ("12 as inches"). A
// measure is a descriptor that has its unit as type and holds its amount as a real number; there is no arithmetic with measures, only
// coercion.
#pragma once

#include "platform/applescript/machine/Machine.h"

#include <optional>

namespace quoddle::language {

using machine::Machine;
using machine::Text;
using machine::Value;

/// Makes a value of a class. `wanted` is a class, or a list of classes of which the first that fits is taken. Raises -1700.
Value coerce(Machine& machine, Value value, Value wanted);
/// Makes a value of a class. Failure, with nothing raised, when that is impossible.
Value tryCoerce(Machine& machine, Value value, FourCharCode wanted);
/// What `class of` answers.
Value classOf(Value value);
/// Whether the value belongs to the class: "number 1 of x" finds integers and reals.
bool isOfClass(Value value, FourCharCode wanted);
/// The value as a whole number, for an index or a part of a date. False, with an error raised, when it is none.
bool wholeOf(Machine& machine, Value value, std::int64_t& whole);
/// The text that a value can become; null, with nothing raised, when it cannot.
Text* textOf(Machine& machine, Value value);
/// Raises -1700: Can’t make … into type ….
Value cannotMake(Machine& machine, Value value, FourCharCode wanted);
/// Raises the error of a value that would be longer than values may be.
Value tooLarge(Machine& machine);

/// The amount of a measure; nullopt for any other value.
std::optional<double> amountOf(Value value);
/// Makes a measure from a number, or from a measure of the same kind (length, area, cubic or liquid volume, weight, temperature). Failure,
/// with nothing raised, for anything else and when `unit` is no unit.
Value makeMeasure(Machine& machine, Value from, FourCharCode unit);

} // namespace quoddle::language

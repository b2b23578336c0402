// SPDX-License-Identifier: MIT
// The meaning of the operators for every kind of value. The interpreter computes with small integers and reals itself and comes here for
// the rest.
//
// Each function that answers a Value answers failure when it has raised an error in the machine. Operands may be references, which are
// followed.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

using machine::Machine;
using machine::Value;

Value add(Machine& machine, Value left, Value right);
Value subtract(Machine& machine, Value left, Value right);
Value multiply(Machine& machine, Value left, Value right);
Value divide(Machine& machine, Value left, Value right);
Value quotient(Machine& machine, Value left, Value right);
Value remainder(Machine& machine, Value left, Value right);
Value power(Machine& machine, Value left, Value right);
Value negate(Machine& machine, Value operand);
Value logicalNot(Machine& machine, Value operand);
Value concatenate(Machine& machine, Value left, Value right);

/// A number as a value: an integer where it is whole and in range, else a real. Raises an error when it is not finite.
Value number(Machine& machine, double value);

enum class Relation : std::uint8_t { Equal, NotEqual, Greater, GreaterOrEqual, Less, LessOrEqual };
Value compare(Machine& machine, Relation relation, Value left, Value right);
Value startsWith(Machine& machine, Value left, Value right);
Value endsWith(Machine& machine, Value left, Value right);
Value contains(Machine& machine, Value left, Value right);

/// Equality under the considerations of the running statement. Never raises; structures nested too deeply are unequal.
bool areEqual(Machine& machine, Value left, Value right);
/// Less than 0, 0 or greater than 0, under the considerations of the running statement.
int compareTexts(Machine& machine, std::u16string_view left, std::u16string_view right);
bool areEqualTexts(Machine& machine, std::u16string_view left, std::u16string_view right);
/// 1 for true, 0 for false, -1 with an error raised when the value is no truth value.
int truth(Machine& machine, Value value);

} // namespace quoddle::language

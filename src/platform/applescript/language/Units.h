// SPDX-License-Identifier: MIT
// Weights and measures: "12 as inches" and what it becomes.
//
// A measure is a descriptor that bears its unit as type and holds its amount as a real number; there is no arithmetic with measures, only coercion.
#pragma once

#include "platform/applescript/machine/Machine.h"

#include <optional>

namespace quoddle::language {

using machine::Machine;
using machine::Value;

/// The amount of a measure; nothing for any other value.
std::optional<double> amountOf(Value value);
/// A measure of a number, or of a measure of the same kind (length, area, cubic or liquid volume, weight, temperature). Failure, without an error raised, for anything
/// else and when `unit` is no unit.
Value makeMeasure(Machine& machine, Value from, FourCharCode unit);

} // namespace quoddle::language

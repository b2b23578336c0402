// SPDX-License-Identifier: MIT
// The parts of a date.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

using machine::Date;
using machine::Machine;
using machine::Value;

/// Failure without an error when dates have no such property.
Value dateProperty(Machine& machine, const Date* date, FourCharCode key);
/// `date "10:30" of d`: a text that is a time, on the day of the date; a text that is a day, at the time of the date. Failure: -30720,
/// -1700.
Value timeOnDay(Machine& machine, const Date* date, Value text);
/// Raises -30720: Invalid date and time ….
Value invalidDate(Machine& machine, Value text);
/// 1 to 12 for a month, 1 (Sunday) to 7 for a weekday, 0 for any other code.
std::int32_t numberOfDateConstant(FourCharCode code);
/// False without an error when dates have no such property that can be set, with one when the value does not fit. The weekday follows from
/// the other parts and cannot be set.
bool setDateProperty(Machine& machine, Date* date, FourCharCode key, Value value);

} // namespace quoddle::language

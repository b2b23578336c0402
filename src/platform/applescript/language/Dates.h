// SPDX-License-Identifier: MIT
// The parts of a date, as properties and in texts.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

using machine::Date;
using machine::Machine;
using machine::Value;

/// A property of a date. Failure, with nothing raised, when dates have no such property.
Value dateProperty(Machine& machine, const Date* date, FourCharCode key);
/// For `date "10:30" of d`: the time in the text on the day of the date, or the day in the text at the time of the date. Raises -30720 or
/// -1700.
Value timeOnDay(Machine& machine, const Date* date, Value text);
/// "2007-11-09T11:35:50"; the year has at least four digits. dateOfText() reads this form too.
std::string isoTextOfDate(const Date& date);
/// Raises -30720: Invalid date and time ….
Value invalidDate(Machine& machine, Value text);
/// The number of a code: 1 to 12 for a month, 1 (Sunday) to 7 for a weekday, 0 for any other code.
std::int32_t numberOfDateConstant(FourCharCode code);
/// Sets a property. False, with nothing raised, when dates have no such property that can be set; false, with an error raised, when the
/// value does not fit. The weekday follows from the other parts and cannot be set.
bool setDateProperty(Machine& machine, Date* date, FourCharCode key, Value value);

} // namespace quoddle::language

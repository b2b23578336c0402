// SPDX-License-Identifier: MIT
// The parts of a date.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

/// Failure without an error when dates have no such property.
Value dateProperty(Machine& machine, const Date* date, FourCharCode key);
/// 1 to 12 for a month, 1 (Sunday) to 7 for a weekday, 0 for any other code.
std::int32_t numberOfDateConstant(FourCharCode code);
/// False without an error when dates have no such property that can be set, with one when the value does not fit. Setting the weekday does nothing.
bool setDateProperty(Machine& machine, Date* date, FourCharCode key, Value value);

} // namespace quoddle::language

// SPDX-License-Identifier: MIT
// Reals as text. There is always a point or an exponent, so that the text reads back as a real: 1.0, 0.1, 1.0E+4, 2.5E-5.
//
// From 10,000 up and below 0.001 a real has the exponent form.
#pragma once

#include <string>

namespace quoddle {

/// The text of a real for coercions, for "&" and for dialogs: at most 12 decimals.
std::u16string textOfReal(double value);
/// The source form of a real in a result: at most 12 decimals, 14 in the exponent form.
std::u16string sourceOfReal(double value);
/// The source form of a literal: the shortest text that reads back as the same number.
std::u16string exactSourceOfReal(double value);

} // namespace quoddle

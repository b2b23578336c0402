// SPDX-License-Identifier: MIT
// Dates as text: US English, whatever the user's formats are, so that a script reads the same everywhere.
//
// A date is a number of seconds since 1904-01-01 00:00, without time zone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quoddle {

constexpr std::int64_t kSecondsFrom1904To1970 = 2'082'844'800;

/// "Friday, November 9, 2007 at 11:35:50 AM". A date more than about 30,000 years from 1904 gives the text of the farthest date.
std::u16string textOfDate(std::int64_t seconds);
/// Reads a date in the forms that people write in US English, and as 2007-11-09T11:35:50: with or without weekday, month as word or number,
/// time with or without AM and PM. A missing date is that of `now`; a missing time is midnight. nullopt when the text is no date.
std::optional<std::int64_t> dateOfText(std::u16string_view text, std::int64_t now);

/// The number of days from 1904-01-01 to a date of the Gregorian calendar.
std::int64_t daysFromDate(std::int64_t year, int month, int day);
/// The present time on the user's clock.
std::int64_t currentSeconds();

} // namespace quoddle

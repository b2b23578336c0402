// SPDX-License-Identifier: MIT
#include "platform/applescript/language/Dates.h"

#include "platform/applescript/language/Coercion.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/syntax/SourceText.h"
#include "platform/base/DateText.h"

#include <algorithm>

namespace quoddle::language {

using namespace machine;
namespace sourcetext = syntax::sourcetext;

namespace {

constexpr std::int64_t kDay = 86400;
constexpr FourCharCode kMonths[] = {"jan "_4cc, "feb "_4cc, "mar "_4cc, "apr "_4cc, "may "_4cc, "jun "_4cc,
                                    "jul "_4cc, "aug "_4cc, "sep "_4cc, "oct "_4cc, "nov "_4cc, "dec "_4cc};
constexpr FourCharCode kWeekdays[] = {"sun "_4cc, "mon "_4cc, "tue "_4cc, "wed "_4cc, "thu "_4cc, "fri "_4cc, "sat "_4cc};

struct Parts {
    std::int64_t year;
    int month; // 1 to 12
    int day;
    std::int64_t time; // seconds since midnight
    std::int64_t days; // since 1904-01-01
};

Parts partsOf(std::int64_t seconds) {
    Parts parts{};
    parts.days = seconds >= 0 ? seconds / kDay : -((-seconds + kDay - 1) / kDay);
    parts.time = seconds - parts.days * kDay;
    // Estimates the year, then corrects it step by step.
    parts.year = 1904 + parts.days * 400 / 146097;
    while (daysFromDate(parts.year, 1, 1) > parts.days)
        --parts.year;
    while (daysFromDate(parts.year + 1, 1, 1) <= parts.days)
        ++parts.year;
    parts.month = 12;
    while (daysFromDate(parts.year, parts.month, 1) > parts.days)
        --parts.month;
    parts.day = static_cast<int>(parts.days - daysFromDate(parts.year, parts.month, 1)) + 1;
    return parts;
}

Value text(Machine& machine, std::u16string_view characters) {
    return Value::object(machine.heap().text(characters));
}

/// The day and the time in "Friday, November 9, 2007 at 11:35:50 AM".
std::pair<std::u16string, std::u16string> dayAndTime(std::int64_t seconds) {
    const std::u16string whole = textOfDate(seconds);
    const auto at = whole.find(u" at ");
    return {whole.substr(0, at), at == std::u16string::npos ? std::u16string() : whole.substr(at + 4)};
}

std::u16string shortDate(const Parts& parts) {
    return sourcetext::integer(parts.month) + u"/" + sourcetext::integer(parts.day) + u"/" + sourcetext::integer(parts.year % 100 / 10) +
           sourcetext::integer(parts.year % 10);
}

} // namespace

Value timeOnDay(Machine& machine, const Date* date, Value text) {
    const Value given = coerce(machine, text, Value::code("ctxt"_4cc));
    if (given.isFailure())
        return given;
    const std::u16string_view words = as<Text>(given)->view();
    const auto seconds = dateOfText(words, date->seconds);
    if (!seconds)
        return invalidDate(machine, given);
    // A text that names a day gives the same result relative to another date; a text that is only a time does not.
    const bool isDay = dateOfText(words, date->seconds + 400 * kDay) == seconds && partsOf(*seconds).time == 0;
    return Value::object(machine.heap().make<Date>(isDay ? *seconds + partsOf(date->seconds).time : *seconds));
}

std::string isoTextOfDate(const Date& date) {
    const Parts parts = partsOf(date.seconds);
    const auto two = [](std::int64_t number) { return (number < 10 ? "0" : "") + std::to_string(number); };
    std::string year = std::to_string(parts.year);
    year.insert(0, year.size() < 4 ? 4 - year.size() : 0, '0');
    return year + '-' + two(parts.month) + '-' + two(parts.day) + 'T' + two(parts.time / 3600) + ':' + two(parts.time / 60 % 60) + ':' +
           two(parts.time % 60);
}

Value invalidDate(Machine& machine, Value text) {
    return machine.raise(-30720, u"Invalid date and time date " + humanDisplay(machine, text) + u".", text);
}

std::int32_t numberOfDateConstant(FourCharCode code) {
    if (auto month = std::find(std::begin(kMonths), std::end(kMonths), code); month != std::end(kMonths))
        return static_cast<std::int32_t>(month - std::begin(kMonths)) + 1;
    auto weekday = std::find(std::begin(kWeekdays), std::end(kWeekdays), code);
    return weekday == std::end(kWeekdays) ? 0 : static_cast<std::int32_t>(weekday - std::begin(kWeekdays)) + 1;
}

Value dateProperty(Machine& machine, const Date* date, FourCharCode key) {
    const Parts parts = partsOf(date->seconds);
    switch (key) {
    case "year"_4cc:
        return Value::integer(static_cast<std::int32_t>(parts.year));
    case "mnth"_4cc:
        return Value::code(kMonths[parts.month - 1]);
    case "day "_4cc:
        return Value::integer(parts.day);
    case "wkdy"_4cc:
        return Value::code(kWeekdays[((parts.days + 5) % 7 + 7) % 7]); // 1904 began on a Friday
    case "hour"_4cc:
        return Value::integer(static_cast<std::int32_t>(parts.time / 3600));
    case "min "_4cc:
        return Value::integer(static_cast<std::int32_t>(parts.time / 60 % 60));
    case "scnd"_4cc:
        return Value::integer(static_cast<std::int32_t>(parts.time % 60));
    case "time"_4cc:
        return Value::integer(static_cast<std::int32_t>(parts.time));
    case "dstr"_4cc:
        return text(machine, dayAndTime(date->seconds).first);
    case "tstr"_4cc:
        return text(machine, dayAndTime(date->seconds).second);
    case "shdt"_4cc:
        return text(machine, shortDate(parts));
    default:
        return Value::failure();
    }
}

bool setDateProperty(Machine& machine, Date* date, FourCharCode key, Value value) {
    machine.error() = ScriptError();
    const Parts parts = partsOf(date->seconds);
    std::int64_t number = 0;
    if (key == "mnth"_4cc && (value.isCode() || value.isConstant())) {
        const auto month = std::find(std::begin(kMonths), std::end(kMonths), value.asCode());
        if (month == std::end(kMonths))
            return false;
        number = month - std::begin(kMonths) + 1;
    } else {
        if (!wholeOf(machine, value, number))
            return false;
    }
    // QUIRK: a part beyond its range runs over into the next one: setting day 32 gives the first of the next month; scripts compute with
    // dates so.
    const auto from = [](std::int64_t year, int month, std::int64_t day, std::int64_t time) {
        return (daysFromDate(year, month, 1) + day - 1) * kDay + time;
    };
    const std::int64_t hours = parts.time / 3600, minutes = parts.time / 60 % 60, seconds = parts.time % 60;
    switch (key) {
    case "year"_4cc:
        if (number < 0 || number > 9999)
            return false;
        date->seconds = from(number, parts.month, parts.day, parts.time);
        return true;
    case "mnth"_4cc:
        if (number < 1 || number > 12)
            return false;
        date->seconds = from(parts.year, static_cast<int>(number), parts.day, parts.time);
        return true;
    case "day "_4cc:
        date->seconds = from(parts.year, parts.month, number, parts.time);
        return true;
    case "hour"_4cc:
        date->seconds = parts.days * kDay + number * 3600 + minutes * 60 + seconds;
        return true;
    case "min "_4cc:
        date->seconds = parts.days * kDay + hours * 3600 + number * 60 + seconds;
        return true;
    case "scnd"_4cc:
        date->seconds = parts.days * kDay + hours * 3600 + minutes * 60 + number;
        return true;
    case "time"_4cc:
        date->seconds = parts.days * kDay + number;
        return true;
    default:
        return false;
    }
}

} // namespace quoddle::language

// SPDX-License-Identifier: MIT
// Numbers and dates as text.
#include "platform/ae/AEScalars.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace quoddle {

namespace {

using namespace std::chrono;

constexpr sys_days kEpoch = year{1904} / January / 1;
constexpr std::int64_t kSecondsPerDay = 86400;

// Nothing when the text has a character beyond ASCII or is longer than any number or date.
std::optional<std::string> trimmedASCII(std::u16string_view text) {
    constexpr std::size_t kLongest = 400;
    constexpr std::u16string_view kBlanks = u" \t\r\n\u00A0";
    std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::u16string_view::npos)
        return {};
    text = text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
    if (text.size() > kLongest || text.find_first_of(u'\0') != std::u16string_view::npos)
        return {};
    std::string result;
    for (char16_t unit : text) {
        if (unit >= 0x80)
            return {};
        result += static_cast<char>(unit);
    }
    return result;
}

template<class T>
std::optional<T> parsedWhole(std::string_view text) {
    T value{};
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

} // namespace

std::u16string textOfNumber(const AENumber& number) {
    char buffer[64];
    auto write = [&buffer](auto value) { return std::to_chars(buffer, std::end(buffer), value).ptr; };
    const char* end = std::visit(write, number);
    return utf16FromUTF8({buffer, static_cast<std::size_t>(end - buffer)});
}

std::optional<AENumber> numberOfText(std::u16string_view text) {
    std::optional<std::string> ascii = trimmedASCII(text);
    if (!ascii)
        return {};
    std::string_view digits = *ascii;
    if (digits.starts_with('+') && !digits.starts_with("+-"))
        digits.remove_prefix(1);
    if (auto whole = parsedWhole<std::int64_t>(digits))
        return AENumber(*whole);
    if (auto whole = parsedWhole<std::uint64_t>(digits))
        return AENumber(*whole);
    auto real = parsedWhole<double>(digits);
    return real && std::isfinite(*real) ? std::optional(AENumber(*real)) : std::nullopt;
}

std::u16string textOfDate(std::int64_t seconds) {
    // Beyond these years the calendar's own arithmetic would overflow.
    constexpr std::int64_t kFarthest = kSecondsPerDay * 366 * 30000;
    std::int64_t bounded = std::clamp(seconds, -kFarthest, kFarthest);
    std::int64_t dayCount = (bounded >= 0 ? bounded : bounded - kSecondsPerDay + 1) / kSecondsPerDay;
    std::int64_t time = bounded - dayCount * kSecondsPerDay;
    year_month_day date(kEpoch + days(dayCount));
    char buffer[64];
    int length = std::snprintf(buffer, sizeof buffer, "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
                               static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), static_cast<int>(time / 3600),
                               static_cast<int>(time / 60 % 60), static_cast<int>(time % 60));
    return utf16FromUTF8({buffer, static_cast<std::size_t>(length)});
}

std::optional<std::int64_t> dateOfText(std::u16string_view text) {
    std::optional<std::string> ascii = trimmedASCII(text);
    int y = 0, hour = 0, minute = 0, second = 0, end = 0;
    unsigned m = 0, d = 0;
    char separator = 'T';
    if (!ascii || std::sscanf(ascii->c_str(), "%5d-%2u-%2u%n", &y, &m, &d, &end) != 3)
        return {};
    if (static_cast<std::size_t>(end) != ascii->size()) {
        int timeEnd = 0;
        if (std::sscanf(ascii->c_str() + end, "%c%2d:%2d:%2d%n", &separator, &hour, &minute, &second, &timeEnd) != 4 ||
            static_cast<std::size_t>(end) + static_cast<std::size_t>(timeEnd) != ascii->size())
            return {};
    }
    year_month_day date = year(y) / month(m) / day(d);
    bool valid = y <= int{year::max()} && date.ok() && (separator == 'T' || separator == ' ') && hour >= 0 && hour < 24 && minute >= 0 &&
                 minute < 60 && second >= 0 && second < 60;
    if (!valid)
        return {};
    return (sys_days(date) - kEpoch).count() * kSecondsPerDay + std::int64_t{hour} * 3600 + std::int64_t{minute} * 60 + second;
}

} // namespace quoddle

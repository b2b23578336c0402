// SPDX-License-Identifier: MIT
// Converts numbers to text and back.
#include "platform/ae/AEScalars.h"
#include "platform/base/RealText.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace quoddle {

namespace {

// nullopt when the text has a character beyond ASCII or is longer than any number.
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
    if (const double* real = std::get_if<double>(&number))
        return textOfReal(*real);
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

} // namespace quoddle

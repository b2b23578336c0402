// SPDX-License-Identifier: MIT
#include "platform/base/RealText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace quoddle {

namespace {

constexpr int kDecimals = 12;
constexpr int kSourceDecimals = 14; // for the exponent form
constexpr int kShortest = -1;
constexpr int kFirstExponentShown = 4; // the first number with an exponent is 1.0E+4
constexpr int kLastExponentHidden = -3;

std::string scientific(double value, int decimals) {
    std::array<char, 40> buffer;
    const auto end = decimals == kShortest
                         ? std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific)
                         : std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific, decimals);
    return {buffer.data(), end.ptr};
}

/// Drops the zeros at the end of the decimals, except one directly behind the point; adds the point when there is none.
std::string trimmed(std::string digits) {
    if (digits.find('.') == std::string::npos)
        return digits + ".0";
    const std::size_t last = digits.find_last_not_of('0');
    digits.resize(last + (digits[last] == '.' ? 2 : 1));
    return digits;
}

std::u16string realText(double value, int decimals, int exponentDecimals) {
    if (!std::isfinite(value))
        return std::isnan(value) ? u"NAN" : value < 0 ? u"-INF" : u"INF";
    // The rounded number decides the form, because rounding may lift a number over the limit of the exponent form.
    const std::string form = scientific(value, exponentDecimals);
    const std::size_t e = form.find('e');
    int exponent = 0;
    const std::size_t digits = e + (form[e + 1] == '+' ? 2 : 1);
    std::from_chars(form.data() + digits, form.data() + form.size(), exponent);
    std::string text;
    if (exponent >= kFirstExponentShown || exponent < kLastExponentHidden) {
        text = trimmed(form.substr(0, e)) + (exponent < 0 ? "E" : "E+") + std::to_string(exponent);
    } else {
        std::array<char, 40> buffer;
        const auto end = decimals == kShortest
                             ? std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed)
                             : std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals);
        text = trimmed({buffer.data(), end.ptr});
    }
    return {text.begin(), text.end()};
}

} // namespace

std::u16string textOfReal(double value) {
    return realText(value, kDecimals, kDecimals);
}

std::u16string sourceOfReal(double value) {
    return realText(value, kDecimals, kSourceDecimals);
}

std::u16string exactSourceOfReal(double value) {
    return realText(value, kShortest, kShortest);
}

} // namespace quoddle

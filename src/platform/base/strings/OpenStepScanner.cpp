// SPDX-License-Identifier: MIT
#include "platform/base/strings/OpenStepScanner.h"

#include "platform/base/Text.h"

#include <algorithm>

#include <unicode/uchar.h>

namespace quoddle {

namespace {

// The upper half of the NeXTSTEP encoding, 0x80 to 0xFF (the last two are unused), in which octal escapes are written.
constexpr std::u16string_view kNeXTUpper = u"\u00A0ÀÁÂÃÄÅÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖÙÚÛÜÝÞµ×÷©¡¢£⁄¥ƒ§¤’“«‹›ﬁﬂ®–†‡·¦¶•‚„”»…‰¬¿"
                                           u"¹ˋ´ˆ˜¯˘˙¨²˚¸³˝˛ˇ—±¼½¾àáâãäåçèéêëìÆíªîïðñŁØŒºòóôõöæùúûıüýłøœßþÿ\uFFFD\uFFFD";
static_assert(kNeXTUpper.size() == 128);

bool isBareCharacter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'_' || c == u'$' || c == u'/' ||
           c == u':' || c == u'.' || c == u'-';
}

} // namespace

bool OpenStepScanner::isBlank(char16_t c) {
    return u_isUWhiteSpace(c) || c == u'\uFEFF';
}

int OpenStepScanner::digitOf(char16_t c) {
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    const char16_t letter = foldedASCII(c);
    return letter >= u'a' && letter <= u'f' ? letter - u'a' + 10 : 99;
}

std::string OpenStepScanner::sentence(const std::string& what) const {
    const auto lines = std::count(mText.begin(), mText.begin() + static_cast<std::ptrdiff_t>(std::min(mAt, mText.size())), u'\n');
    return "line " + std::to_string(lines + 1) + ": " + what;
}

bool OpenStepScanner::skipBlanks() {
    while (!atEnd()) {
        if (peek() == u'/' && peekNext() == u'/') {
            mAt = std::min(mText.find_first_of(u"\n\r\u2028", mAt), mText.size());
        } else if (peek() == u'/' && peekNext() == u'*') {
            const std::size_t end = mText.find(u"*/", mAt + 2);
            if (end == std::u16string_view::npos)
                return false;
            mAt = end + 2;
        } else if (isBlank(peek())) {
            ++mAt;
        } else {
            break;
        }
    }
    return true;
}

Result<std::u16string, std::string> OpenStepScanner::readText() {
    if (peek() == u'"' || peek() == u'\'')
        return readQuoted();
    const std::size_t start = mAt;
    while (!atEnd() && isBareCharacter(peek()))
        ++mAt;
    if (mAt > start)
        return std::u16string(mText.substr(start, mAt - start));
    return Failure{sentence(atEnd() ? "it ends too early" : "\"" + utf8FromUTF16(mText.substr(mAt, 1)) + "\" where a value belongs")};
}

Result<std::u16string, std::string> OpenStepScanner::readQuoted() {
    const char16_t quote = peek();
    const std::size_t start = mAt++;
    std::u16string text;
    while (!atEnd() && peek() != quote) {
        const char16_t c = mText[mAt++];
        text += c == u'\\' ? readEscape() : c;
    }
    if (atEnd()) {
        mAt = start;
        return Failure{sentence("a text without an end")};
    }
    ++mAt;
    return text;
}

/// Reads an escape behind its backslash. An unknown escape stands for its own character.
char16_t OpenStepScanner::readEscape() {
    if (atEnd())
        return u'\\';
    const char16_t c = mText[mAt++];
    if (digitOf(c) < 8) {
        const int code = readDigits(c - u'0', 8, 2) & 0xFF;
        return code < 0x80 ? static_cast<char16_t>(code) : kNeXTUpper[static_cast<std::size_t>(code - 0x80)];
    }
    if (c == u'U' || c == u'u')
        return digitOf(peek()) < 16 ? static_cast<char16_t>(readDigits(0, 16, 4)) : c;
    constexpr std::u16string_view kNames = u"abfnrtv";
    constexpr std::u16string_view kMeanings = u"\a\b\f\n\r\t\v";
    const std::size_t index = kNames.find(c);
    return index == std::u16string_view::npos ? c : kMeanings[index];
}

int OpenStepScanner::readDigits(int number, int base, int atMost) {
    for (; atMost > 0 && !atEnd() && digitOf(peek()) < base; --atMost)
        number = number * base + digitOf(mText[mAt++]);
    return number;
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Splits the OpenStep text form, in which strings tables and old property lists are written, into blanks, comments and texts, quoted or
// bare, with their escapes. The readers decide what the texts mean.
#pragma once

#include "platform/base/Result.h"

#include <string>
#include <string_view>

namespace quoddle {

class OpenStepScanner {
public:
    /// The text must outlive the scanner.
    explicit OpenStepScanner(std::u16string_view text) : mText(text) {}

    bool atEnd() const { return mAt >= mText.size(); }
    /// The next unit; U+0000 at the end.
    char16_t peek() const { return atEnd() ? u'\0' : mText[mAt]; }
    void advance() { mAt += !atEnd(); }
    std::size_t position() const { return mAt; }
    void setPosition(std::size_t position) { mAt = position; }
    /// An error message with the number of the current line.
    std::string sentence(const std::string& what) const;

    /// Skips blanks and comments. False when a comment has no end.
    bool skipBlanks();
    /// Reads a quoted text or a bare word.
    Result<std::u16string, std::string> readText();

    static bool isBlank(char16_t c);
    /// The value of a hexadecimal digit; 99 for any other unit.
    static int digitOf(char16_t c);

private:
    char16_t peekNext() const { return mAt + 1 < mText.size() ? mText[mAt + 1] : u'\0'; }
    Result<std::u16string, std::string> readQuoted();
    char16_t readEscape();
    int readDigits(int number, int base, int atMost);

    const std::u16string_view mText;
    std::size_t mAt = 0;
};

} // namespace quoddle

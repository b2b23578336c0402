// SPDX-License-Identifier: MIT
// The words of the OpenStep text form, in which strings tables and old property lists are written: blanks and comments, quoted and bare
// texts with their escapes. What is made of them is the reader's affair.
#pragma once

#include "platform/base/Result.h"

#include <string>
#include <string_view>

namespace quoddle {

class OpenStepScanner {
public:
    /// The text must live as long as this.
    explicit OpenStepScanner(std::u16string_view text) : mText(text) {}

    bool atEnd() const { return mAt >= mText.size(); }
    /// U+0000 at the end.
    char16_t peek() const { return atEnd() ? u'\0' : mText[mAt]; }
    void advance() { mAt += !atEnd(); }
    std::size_t position() const { return mAt; }
    void setPosition(std::size_t position) { mAt = position; }
    /// With the number of the line.
    std::string sentence(const std::string& what) const;

    /// False when a comment has no end.
    bool skipBlanks();
    /// A text between quotes or a bare word.
    Result<std::u16string, std::string> readText();

    static bool isBlank(char16_t c);
    /// Of a hexadecimal digit; 99 for anything else.
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

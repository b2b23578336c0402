// SPDX-License-Identifier: MIT
#include "SourcePlace.h"

#include "platform/base/Text.h"

#include <algorithm>

#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace quoddle::tool {

namespace {

constexpr std::size_t kWidest = 160;          // columns of a line that are shown
constexpr std::size_t kLongest = 4 * kWidest; // units in them, some of which take no column
constexpr std::size_t kInFront = 40;          // columns in front of the marks, where the line is cut
constexpr std::size_t kTabStops = 4;

bool isLineEnd(char16_t c) {
    return c == u'\n' || c == u'\r';
}

/// The columns that a character takes on a terminal.
std::size_t widthOf(UChar32 c) {
    const int type = u_charType(c);
    if (type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR)
        return 0;
    const int syllable = u_getIntPropertyValue(c, UCHAR_HANGUL_SYLLABLE_TYPE);
    if (syllable == U_HST_VOWEL_JAMO || syllable == U_HST_TRAILING_JAMO) // joins the one in front
        return 0;
    const int width = u_getIntPropertyValue(c, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

/// The part of a line that is shown, and the marks below it.
struct Strip {
    std::u16string text, marks;
};

Strip stripOf(std::u16string_view line, std::size_t start, std::size_t end) {
    Strip strip;
    std::size_t column = 0, skipped = 0;
    const std::size_t from = start > kWidest - kInFront ? start - kInFront : 0;
    for (std::size_t i = 0; i <= line.size() && column < kWidest && strip.text.size() < kLongest;) {
        const std::size_t at = i;
        UChar32 c = u' '; // behind the line, where a mark may stand
        if (i < line.size())
            U16_NEXT(line.data(), i, line.size(), c);
        else
            ++i;
        if (at < from) {
            ++skipped;
            continue;
        }
        const bool isMarked = at >= start && (at < end || at == start);
        if (at == line.size() && !isMarked)
            break;
        std::size_t width = c == u'\t' ? kTabStops - column % kTabStops : widthOf(c);
        if (at == line.size()) {
            width = 1;
        } else if (c == u'\t') {
            strip.text.append(width, u' ');
        } else if (u_iscntrl(c)) {
            strip.text += u'?';
            width = 1;
        } else {
            char16_t units[2];
            std::size_t count = 0;
            U16_APPEND_UNSAFE(units, count, c);
            strip.text.append(units, count);
        }
        strip.marks.append(width, isMarked ? u'^' : u' ');
        column += width;
    }
    if (skipped > 0) {
        strip.text.insert(0, u"…");
        strip.marks.insert(0, u" ");
    }
    return strip;
}

} // namespace

SourcePlace placeOf(std::u16string_view text, std::size_t offset) {
    SourcePlace place;
    for (std::size_t i = 0; i < std::min(offset, text.size()); ++i) {
        if (text[i] == u'\n' || (text[i] == u'\r' && (i + 1 == text.size() || text[i + 1] != u'\n')))
            place = {place.line + 1, 1};
        else
            place.column += !U16_IS_TRAIL(text[i]);
    }
    return place;
}

std::string markedLine(std::u16string_view text, std::size_t start, std::size_t end) {
    start = std::min(start, text.size());
    std::size_t first = start, last = start;
    while (first > 0 && !isLineEnd(text[first - 1]))
        --first;
    while (last < text.size() && !isLineEnd(text[last]))
        ++last;
    const Strip strip = stripOf(text.substr(first, last - first), start - first, std::clamp(end, start, last) - first);
    const std::string number = std::to_string(placeOf(text, start).line);
    const std::string marks = utf8FromUTF16(strip.marks);
    return "  " + number + " | " + utf8FromUTF16(strip.text) + "\n  " + std::string(number.size(), ' ') + " | " +
           marks.substr(0, marks.find_last_not_of(' ') + 1) + "\n";
}

} // namespace quoddle::tool

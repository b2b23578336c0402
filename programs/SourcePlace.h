// SPDX-License-Identifier: MIT
// Places in source text as people and editors count them, and a line of it as a terminal shows it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quoddle::tool {

/// Both count from 1; columns are characters (code points). Lines end with LF, CR or both.
struct SourcePlace {
    std::size_t line = 1;
    std::size_t column = 1;
};

/// The place of a unit of the text; behind its end, the end.
SourcePlace placeOf(std::u16string_view text, std::size_t offset);

/// Two lines for a terminal: the first line of the range, behind its number, and marks below the range. A long line is cut on both sides;
/// control characters are shown as "?".
std::string markedLine(std::u16string_view text, std::size_t start, std::size_t end);

} // namespace quoddle::tool

// SPDX-License-Identifier: MIT
// Where the characters, words and paragraphs of a text begin and end. Knows nothing of machines and values.
//
// Sources: Unicode Standard Annex 29 for characters (extended grapheme clusters) and words, as ICU has it.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace quoddle::language {

/// A stretch of a text, in UTF-16 units.
struct Span {
    std::uint32_t start;
    std::uint32_t length;
};

enum class TextBreaks { Characters, Words, Paragraphs };

/// Whether every unit is a character of its own. True of nearly all texts without emoji, combining marks and the line ends CR LF.
bool isEveryUnitACharacter(std::u16string_view text);

/// Calls `visit` with every element from the first to the last, until it answers false.
void visitElements(std::u16string_view text, TextBreaks kind, const std::function<bool(Span)>& visit);
/// Calls `visit` with every element from the last to the first, until it answers false.
void visitElementsBackwards(std::u16string_view text, TextBreaks kind, const std::function<bool(Span)>& visit);

} // namespace quoddle::language

// SPDX-License-Identifier: MIT
// Elements of text: characters, words, paragraphs, text items. All places are in UTF-16 units.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

struct Span {
    std::size_t start;
    std::size_t length;
};

/// Is this a class whose elements texts have?
bool isTextElement(FourCharCode elementClass);
/// How many characters (grapheme clusters).
std::size_t characterCount(const Text* text);
std::size_t elementCount(Machine& machine, const Text* text, FourCharCode elementClass);
/// The element at a 1-based index, counted from the end when negative. False when there is none.
bool elementAt(Machine& machine, const Text* text, FourCharCode elementClass, std::int64_t index, Span& span);
std::vector<Span> elements(Machine& machine, const Text* text, FourCharCode elementClass);

} // namespace quoddle::language

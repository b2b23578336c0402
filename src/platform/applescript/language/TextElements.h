// SPDX-License-Identifier: MIT
// Elements of text: characters, words, paragraphs, text items.
//
// Decision: scripts ask for one element after the other. So the places of a text's elements are remembered once an element beyond the first
// or last few has been asked for, and a loop over all elements takes time in proportion to their number.
#pragma once

#include "platform/applescript/language/TextBreaks.h"
#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

using machine::Machine;
using machine::Text;

bool isTextElement(FourCharCode elementClass);
/// The number of characters (grapheme clusters).
std::size_t characterCount(Machine& machine, const Text* text);
/// Finds the element at a 1-based index, counted from the end when negative. False when there is none.
bool elementAt(Machine& machine, const Text* text, FourCharCode elementClass, std::int64_t index, Span& span);
/// Calls `visit` with every element from the first to the last, until it answers false.
void forEachElement(Machine& machine, const Text* text, FourCharCode elementClass, const std::function<bool(Span)>& visit);
/// Calls `visit` with the elements that lie completely in a part of the text. `visit` must not look for elements.
void forEachElementWithin(Machine& machine, const Text* text, FourCharCode elementClass, Span part, const std::function<bool(Span)>& visit);

/// The places of elements that are remembered for some texts, which the index does not keep alive. Each machine has one.
class TextElementIndex {
public:
    /// The places of a text's elements, valid until the next call of any method. Null when they are not remembered.
    const std::vector<Span>* find(Machine& machine, const Text* text, FourCharCode elementClass);
    /// Makes and remembers the places of a text's elements. Valid as for find.
    const std::vector<Span>& make(Machine& machine, const Text* text, FourCharCode elementClass);
    /// Forgets texts that a collection is about to free, because another text may get their address.
    void forgetUnmarked();

private:
    struct Entry {
        const Text* text;
        FourCharCode elementClass;
        std::uint32_t considering;              // text items only
        std::vector<std::u16string> delimiters; // text items only
        std::vector<Span> spans;
    };
    static constexpr std::size_t kMaximumEntries = 4;
    std::vector<Entry> mEntries; // most recently used first
};

} // namespace quoddle::language

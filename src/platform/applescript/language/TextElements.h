// SPDX-License-Identifier: MIT
// Elements of text: characters, words, paragraphs, text items.
//
// Decision: scripts ask for one element after the other. Where the elements of a text are is therefore remembered once an element beyond
// the first or last few has been asked for, so that a loop over all of them costs what their number says.
#pragma once

#include "platform/applescript/language/TextBreaks.h"
#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

using machine::Machine;
using machine::Text;

/// Is this a class whose elements texts have?
bool isTextElement(FourCharCode elementClass);
/// How many characters (grapheme clusters).
std::size_t characterCount(Machine& machine, const Text* text);
/// The element at a 1-based index, counted from the end when negative. False when there is none.
bool elementAt(Machine& machine, const Text* text, FourCharCode elementClass, std::int64_t index, Span& span);
/// From the first to the last, until `visit` answers false.
void forEachElement(Machine& machine, const Text* text, FourCharCode elementClass, const std::function<bool(Span)>& visit);
/// Those that lie in a part of the text as a whole. `visit` must not look for elements.
void forEachElementWithin(Machine& machine, const Text* text, FourCharCode elementClass, Span part, const std::function<bool(Span)>& visit);

/// What is remembered of texts; one for each machine. It does not keep them alive.
class TextElementIndex {
public:
    /// Valid until the next call of any method. Null when nothing is remembered.
    const std::vector<Span>* find(Machine& machine, const Text* text, FourCharCode elementClass);
    /// Likewise, but makes the list.
    const std::vector<Span>& make(Machine& machine, const Text* text, FourCharCode elementClass);
    /// In a collection, which may give the place of a text to another one.
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
    std::vector<Entry> mEntries; // the one used last in front
};

} // namespace quoddle::language

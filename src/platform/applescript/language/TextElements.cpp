// SPDX-License-Identifier: MIT
#include "platform/applescript/language/TextElements.h"

#include "platform/applescript/language/LanguageObject.h"
#include "platform/applescript/language/Operators.h"

#include <memory>
#include <unicode/ubrk.h>
#include <unicode/ustring.h>

namespace quoddle::language {

namespace {

struct BreakCloser {
    void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
};
using BreakIterator = std::unique_ptr<UBreakIterator, BreakCloser>;

BreakIterator openBreaks(UBreakIteratorType type, std::u16string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    BreakIterator iterator(ubrk_open(type, "en", text.data(), static_cast<std::int32_t>(text.size()), &status));
    return U_SUCCESS(status) ? std::move(iterator) : nullptr;
}

/// Below this no unit combines with another, but for a line feed behind a return, which is one character with it.
bool isSimple(const Text* text) {
    if (text->flags & (Text::kKnownSimple | Text::kKnownComplex))
        return text->flags & Text::kKnownSimple;
    bool simple = true;
    char16_t previous = 0;
    for (char16_t c : text->view()) {
        if (c >= 0x300 || (c == u'\n' && previous == u'\r')) {
            simple = false;
            break;
        }
        previous = c;
    }
    const_cast<Text*>(text)->flags |= simple ? Text::kKnownSimple : Text::kKnownComplex;
    return simple;
}

std::vector<Span> characters(const Text* text) {
    std::vector<Span> spans;
    if (isSimple(text)) {
        spans.reserve(text->length);
        for (std::size_t i = 0; i < text->length; ++i)
            spans.push_back({i, 1});
        return spans;
    }
    if (BreakIterator breaks = openBreaks(UBRK_CHARACTER, text->view())) {
        std::int32_t start = ubrk_first(breaks.get());
        for (std::int32_t end = ubrk_next(breaks.get()); end != UBRK_DONE; end = ubrk_next(breaks.get())) {
            spans.push_back({static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)});
            start = end;
        }
    }
    return spans;
}

std::vector<Span> words(const Text* text) {
    std::vector<Span> spans;
    BreakIterator breaks = openBreaks(UBRK_WORD, text->view());
    if (!breaks)
        return spans;
    std::int32_t start = ubrk_first(breaks.get());
    for (std::int32_t end = ubrk_next(breaks.get()); end != UBRK_DONE; end = ubrk_next(breaks.get())) {
        if (ubrk_getRuleStatus(breaks.get()) != UBRK_WORD_NONE)
            spans.push_back({static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)});
        start = end;
    }
    return spans;
}

/// Ended by a return, a line feed or both. A text that ends so has one more, empty paragraph; the empty text has none.
std::vector<Span> paragraphs(const Text* text) {
    std::vector<Span> spans;
    const auto view = text->view();
    std::size_t start = 0;
    for (std::size_t i = 0; i < view.size(); ++i) {
        if (view[i] != u'\r' && view[i] != u'\n')
            continue;
        spans.push_back({start, i - start});
        if (view[i] == u'\r' && i + 1 < view.size() && view[i + 1] == u'\n')
            ++i;
        start = i + 1;
    }
    if (!view.empty())
        spans.push_back({start, view.size() - start});
    return spans;
}

std::vector<Span> textItems(Machine& machine, const Text* text) {
    std::vector<std::u16string_view> delimiters = textItemDelimiters(machine);
    std::erase_if(delimiters, [](std::u16string_view delimiter) { return delimiter.empty(); });
    if (delimiters.empty())
        return characters(text);
    std::vector<Span> spans;
    const auto view = text->view();
    std::size_t start = 0;
    if (delimiters.size() == 1) {
        std::size_t length = 0;
        for (std::size_t at; (at = findText(machine, view, delimiters[0], start, length)) != std::u16string_view::npos; start = at + length)
            spans.push_back({start, at - start});
        spans.push_back({start, view.size() - start});
        return spans;
    }
    // The delimiter that comes first wins, the longer one where two begin at one place.
    struct Next {
        std::size_t at, length;
    };
    std::vector<Next> next(delimiters.size());
    for (std::size_t i = 0; i < delimiters.size(); ++i)
        next[i].at = findText(machine, view, delimiters[i], 0, next[i].length);
    while (true) {
        std::size_t best = 0;
        for (std::size_t i = 0; i < delimiters.size(); ++i) {
            if (next[i].at != std::u16string_view::npos && next[i].at < start)
                next[i].at = findText(machine, view, delimiters[i], start, next[i].length);
            if (next[i].at < next[best].at || (next[i].at == next[best].at && next[i].length > next[best].length))
                best = i;
        }
        if (next[best].at == std::u16string_view::npos)
            break;
        spans.push_back({start, next[best].at - start});
        start = next[best].at + next[best].length;
    }
    spans.push_back({start, view.size() - start});
    return spans;
}

} // namespace

bool isTextElement(FourCharCode elementClass) {
    switch (elementClass) {
    case "cha "_4cc:
    case "cwor"_4cc:
    case "cpar"_4cc:
    case "clin"_4cc:
    case "citm"_4cc:
    case "ctxt"_4cc:
    case "cobj"_4cc:
        return true;
    default:
        return false;
    }
}

std::size_t characterCount(const Text* text) {
    return isSimple(text) ? text->length : characters(text).size();
}

std::vector<Span> elements(Machine& machine, const Text* text, FourCharCode elementClass) {
    switch (elementClass) {
    case "cwor"_4cc:
        return words(text);
    case "cpar"_4cc:
    case "clin"_4cc:
        return paragraphs(text);
    case "citm"_4cc:
        return textItems(machine, text);
    default:
        return characters(text);
    }
}

std::size_t elementCount(Machine& machine, const Text* text, FourCharCode elementClass) {
    if (elementClass == "cha "_4cc || elementClass == "cobj"_4cc)
        return characterCount(text);
    return elements(machine, text, elementClass).size();
}

bool elementAt(Machine& machine, const Text* text, FourCharCode elementClass, std::int64_t index, Span& span) {
    const bool byCharacter = elementClass == "cha "_4cc || elementClass == "cobj"_4cc || elementClass == "ctxt"_4cc;
    if (byCharacter && isSimple(text)) {
        const std::int64_t place = index < 0 ? text->length + index : index - 1;
        if (index == 0 || place < 0 || place >= text->length)
            return false;
        span = {static_cast<std::size_t>(place), 1};
        return true;
    }
    const std::vector<Span> all = elements(machine, text, elementClass);
    const auto count = static_cast<std::int64_t>(all.size());
    const std::int64_t place = index < 0 ? count + index : index - 1;
    if (index == 0 || place < 0 || place >= count)
        return false;
    span = all[static_cast<std::size_t>(place)];
    return true;
}

} // namespace quoddle::language

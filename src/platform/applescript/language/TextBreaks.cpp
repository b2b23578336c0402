// SPDX-License-Identifier: MIT
#include "platform/applescript/language/TextBreaks.h"

#include <memory>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace quoddle::language {

namespace {

struct BreakCloser {
    void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
};

/// An iterator over a text, which must live until the iterator gets another one; null when ICU has none. A thread keeps one iterator of
/// each kind, because making one costs far more than giving it another text.
UBreakIterator* breaksOf(UBreakIteratorType type, std::u16string_view text) {
    thread_local std::unique_ptr<UBreakIterator, BreakCloser> characters, words;
    auto& kept = type == UBRK_WORD ? words : characters;
    UErrorCode status = U_ZERO_ERROR;
    if (!kept)
        kept.reset(ubrk_open(type, "en", nullptr, 0, &status));
    if (kept)
        ubrk_setText(kept.get(), text.data(), static_cast<std::int32_t>(text.size()), &status);
    return U_SUCCESS(status) ? kept.get() : nullptr;
}

Span spanOf(std::size_t start, std::size_t end) {
    return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end - start)};
}

/// Whether a unit always has boundaries beside other such units, except between CR and LF. Below U+0300 nothing combines; above, letters
/// and signs that are no part of a syllable in pieces stand alone, too.
bool standsAlone(char16_t unit) {
    if (unit < 0x300)
        return true;
    if (U16_IS_SURROGATE(unit))
        return false;
    const int kind = u_getIntPropertyValue(unit, UCHAR_GRAPHEME_CLUSTER_BREAK);
    return kind == U_GCB_OTHER || kind == U_GCB_LV || kind == U_GCB_LVT;
}

void visitCharacters(std::u16string_view text, const std::function<bool(Span)>& visit) {
    UBreakIterator* breaks = nullptr;
    for (std::size_t start = 0; start < text.size();) {
        std::size_t end = start + 1;
        if (text[start] == u'\r') {
            end += end < text.size() && text[end] == u'\n' ? 1 : 0;
        } else if (end < text.size() && !(standsAlone(text[start]) && standsAlone(text[end]))) {
            if (!breaks && !(breaks = breaksOf(UBRK_CHARACTER, text)))
                return;
            end = static_cast<std::size_t>(ubrk_following(breaks, static_cast<std::int32_t>(start)));
        }
        if (!visit(spanOf(start, end)))
            return;
        start = end;
    }
}

void visitWords(std::u16string_view text, const std::function<bool(Span)>& visit) {
    UBreakIterator* breaks = breaksOf(UBRK_WORD, text);
    if (!breaks)
        return;
    std::int32_t start = ubrk_first(breaks);
    for (std::int32_t end = ubrk_next(breaks); end != UBRK_DONE; start = end, end = ubrk_next(breaks))
        if (ubrk_getRuleStatus(breaks) != UBRK_WORD_NONE && !visit(spanOf(static_cast<std::size_t>(start), static_cast<std::size_t>(end))))
            return;
}

/// Visits paragraphs, which end with a return, a line feed or both. A text that ends so has one more, empty paragraph; the empty text has
/// none.
void visitParagraphs(std::u16string_view text, const std::function<bool(Span)>& visit) {
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != u'\r' && text[i] != u'\n')
            continue;
        if (!visit(spanOf(start, i)))
            return;
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
        start = i + 1;
    }
    if (!text.empty())
        visit(spanOf(start, text.size()));
}

void visitBreaksBackwards(std::u16string_view text, UBreakIteratorType type, const std::function<bool(Span)>& visit) {
    UBreakIterator* breaks = breaksOf(type, text);
    if (!breaks)
        return;
    std::int32_t end = ubrk_last(breaks);
    while (end != UBRK_DONE && end > 0) {
        const bool counts = type != UBRK_WORD || ubrk_getRuleStatus(breaks) != UBRK_WORD_NONE;
        const std::int32_t start = ubrk_previous(breaks);
        if (counts && !visit(spanOf(static_cast<std::size_t>(start), static_cast<std::size_t>(end))))
            return;
        end = start;
    }
}

void visitParagraphsBackwards(std::u16string_view text, const std::function<bool(Span)>& visit) {
    std::size_t end = text.size();
    for (std::size_t i = text.size(); i > 0; --i) {
        const char16_t unit = text[i - 1];
        if (unit != u'\r' && unit != u'\n')
            continue;
        if (!visit(spanOf(i, end)))
            return;
        if (unit == u'\n' && i >= 2 && text[i - 2] == u'\r')
            --i;
        end = i - 1;
    }
    if (!text.empty())
        visit(spanOf(0, end));
}

} // namespace

bool isEveryUnitACharacter(std::u16string_view text) {
    char16_t previous = 0;
    for (char16_t unit : text) {
        if (unit < 0x300 ? unit == u'\n' && previous == u'\r' : !standsAlone(unit))
            return false;
        previous = unit;
    }
    return true;
}

void visitElements(std::u16string_view text, TextBreaks kind, const std::function<bool(Span)>& visit) {
    switch (kind) {
    case TextBreaks::Characters:
        return visitCharacters(text, visit);
    case TextBreaks::Words:
        return visitWords(text, visit);
    case TextBreaks::Paragraphs:
        return visitParagraphs(text, visit);
    }
}

void visitElementsBackwards(std::u16string_view text, TextBreaks kind, const std::function<bool(Span)>& visit) {
    switch (kind) {
    case TextBreaks::Characters:
        return visitBreaksBackwards(text, UBRK_CHARACTER, visit);
    case TextBreaks::Words:
        return visitBreaksBackwards(text, UBRK_WORD, visit);
    case TextBreaks::Paragraphs:
        return visitParagraphsBackwards(text, visit);
    }
}

} // namespace quoddle::language

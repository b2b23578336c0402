// SPDX-License-Identifier: MIT
#include "platform/applescript/language/TextElements.h"

#include "platform/applescript/language/References.h"
#include "platform/base/TextSearch.h"

#include <algorithm>

namespace quoddle::language {

using namespace machine;

namespace {

constexpr std::int64_t kNearTheEnds = 16; // elements so near to an end are counted each time and not remembered

bool isSimple(const Text* text) {
    if (!(text->flags & (Text::kKnownSimple | Text::kKnownComplex)))
        const_cast<Text*>(text)->flags |= isEveryUnitACharacter(text->view()) ? Text::kKnownSimple : Text::kKnownComplex;
    return text->flags & Text::kKnownSimple;
}

TextBreaks breaksFor(FourCharCode elementClass) {
    switch (elementClass) {
    case "cwor"_4cc:
        return TextBreaks::Words;
    case "cpar"_4cc:
    case "clin"_4cc:
        return TextBreaks::Paragraphs;
    default:
        return TextBreaks::Characters;
    }
}

/// The delimiters that are not empty. When there are none, every character is a text item.
std::vector<std::u16string> delimitersInUse(Machine& machine) {
    std::vector<std::u16string> delimiters = textItemDelimiters(machine);
    std::erase_if(delimiters, [](const std::u16string& delimiter) { return delimiter.empty(); });
    return delimiters;
}

/// Finds the text items of a text. The delimiter that comes first wins; of two that begin at one place the longer one wins.
class TextItems {
public:
    TextItems(Machine& machine, std::u16string_view text, std::vector<std::u16string> delimiters)
        : mText(text), mDelimiters(std::move(delimiters)), mSearch(text, machine.considering()), mNext(mDelimiters.size()) {
        for (std::size_t i = 0; i < mDelimiters.size(); ++i)
            findNext(i, 0);
    }

    void visit(const std::function<bool(Span)>& visit) {
        std::size_t start = 0;
        for (std::size_t best; mNext[best = first(start)].at != kNotFound; start = mNext[best].at + mNext[best].length)
            if (!visit({static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(mNext[best].at - start)}))
                return;
        visit({static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(mText.size() - start)});
    }

private:
    struct Place {
        std::size_t at = 0, length = 0;
    };

    void findNext(std::size_t delimiter, std::size_t start) {
        Place& place = mNext[delimiter];
        place.at = mSearch.find(mDelimiters[delimiter], start, place.length);
        if (place.length == 0) // a delimiter that consists of ignored characters separates nothing
            place.at = kNotFound;
    }

    std::size_t first(std::size_t start) {
        std::size_t best = 0;
        for (std::size_t i = 0; i < mNext.size(); ++i) {
            if (mNext[i].at < start)
                findNext(i, start);
            if (mNext[i].at < mNext[best].at || (mNext[i].at == mNext[best].at && mNext[i].length > mNext[best].length))
                best = i;
        }
        return best;
    }

    const std::u16string_view mText;
    const std::vector<std::u16string> mDelimiters;
    TextSearch mSearch;
    std::vector<Place> mNext;
};

bool isCharacterClass(FourCharCode elementClass) {
    return elementClass == "cha "_4cc || elementClass == "cobj"_4cc || elementClass == "ctxt"_4cc;
}

bool unitAt(const Text* text, std::int64_t index, Span& span) {
    const std::int64_t place = index < 0 ? text->length + index : index - 1;
    span = {static_cast<std::uint32_t>(place), 1};
    return index != 0 && place >= 0 && place < text->length;
}

/// Finds an element by counting from the end of the text that the index counts from.
bool elementNearEnd(const Text* text, TextBreaks kind, std::int64_t index, Span& span) {
    bool found = false;
    std::int64_t left = index < 0 ? -index : index;
    const auto visit = [&](Span element) {
        found = --left == 0;
        span = element;
        return !found;
    };
    index < 0 ? visitElementsBackwards(text->view(), kind, visit) : visitElements(text->view(), kind, visit);
    return found;
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

const std::vector<Span>* TextElementIndex::find(Machine& machine, const Text* text, FourCharCode elementClass) {
    const auto isWanted = [&](const Entry& entry) {
        if (entry.text != text || entry.elementClass != elementClass)
            return false;
        if (elementClass != "citm"_4cc)
            return true;
        const auto delimiters = delimitersInUse(machine);
        return entry.considering == machine.considering() &&
               std::equal(delimiters.begin(), delimiters.end(), entry.delimiters.begin(), entry.delimiters.end());
    };
    const auto found = std::find_if(mEntries.begin(), mEntries.end(), isWanted);
    if (found == mEntries.end())
        return nullptr;
    std::rotate(mEntries.begin(), found, found + 1);
    return &mEntries.front().spans;
}

void TextElementIndex::forgetUnmarked() {
    std::erase_if(mEntries, [](const Entry& entry) { return !Heap::isMarked(entry.text); });
}

const std::vector<Span>& TextElementIndex::make(Machine& machine, const Text* text, FourCharCode elementClass) {
    if (const std::vector<Span>* known = find(machine, text, elementClass))
        return *known;
    Entry entry{text, elementClass, machine.considering(), {}, {}};
    if (elementClass == "citm"_4cc)
        entry.delimiters = delimitersInUse(machine);
    forEachElement(machine, text, elementClass, [&](Span span) {
        entry.spans.push_back(span);
        return true;
    });
    if (mEntries.size() == kMaximumEntries)
        mEntries.pop_back();
    return mEntries.insert(mEntries.begin(), std::move(entry))->spans;
}

std::size_t characterCount(Machine& machine, const Text* text) {
    return isSimple(text) ? text->length : machine.textElements().make(machine, text, "cha "_4cc).size();
}

void forEachElement(Machine& machine, const Text* text, FourCharCode elementClass, const std::function<bool(Span)>& visit) {
    if (text->length == 0)
        return;
    if (elementClass == "citm"_4cc)
        if (auto delimiters = delimitersInUse(machine); !delimiters.empty())
            return TextItems(machine, text->view(), std::move(delimiters)).visit(visit);
    visitElements(text->view(), breaksFor(elementClass), visit);
}

void forEachElementWithin(Machine& machine, const Text* text, FourCharCode elementClass, Span part,
                          const std::function<bool(Span)>& visit) {
    const std::uint32_t end = part.start + part.length;
    if (isCharacterClass(elementClass)) {
        elementClass = "cha "_4cc;
        if (isSimple(text)) {
            for (std::uint32_t at = part.start; at < end && visit({at, 1}); ++at)
                ;
            return;
        }
    }
    const std::vector<Span>& spans = machine.textElements().make(machine, text, elementClass);
    auto span = std::lower_bound(spans.begin(), spans.end(), part.start, [](Span a, std::uint32_t start) { return a.start < start; });
    while (span != spans.end() && span->start + span->length <= end && visit(*span))
        ++span;
}

bool elementAt(Machine& machine, const Text* text, FourCharCode elementClass, std::int64_t index, Span& span) {
    if (isCharacterClass(elementClass)) {
        elementClass = "cha "_4cc;
        if (text->flags & Text::kKnownSimple)
            return unitAt(text, index, span);
    }
    const std::vector<Span>* spans = machine.textElements().find(machine, text, elementClass);
    if (!spans) {
        if (elementClass != "citm"_4cc && index >= -kNearTheEnds && index <= kNearTheEnds)
            return index != 0 && elementNearEnd(text, breaksFor(elementClass), index, span);
        if (elementClass == "cha "_4cc && isSimple(text))
            return unitAt(text, index, span);
        spans = &machine.textElements().make(machine, text, elementClass);
    }
    const auto count = static_cast<std::int64_t>(spans->size());
    const std::int64_t place = index < 0 ? count + index : index - 1;
    if (index == 0 || place < 0 || place >= count)
        return false;
    span = (*spans)[static_cast<std::size_t>(place)];
    return true;
}

} // namespace quoddle::language

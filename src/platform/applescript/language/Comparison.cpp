// SPDX-License-Identifier: MIT
// Comparing values, and texts under considerations.
#include "platform/applescript/language/Coercion.h"
#include "platform/applescript/language/Dates.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/language/Files.h"
#include "platform/applescript/language/Operators.h"
#include "platform/applescript/language/References.h"

#include <algorithm>
#include <memory>
#include <unicode/uchar.h>
#include <unicode/ucol.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

namespace quoddle::language {

namespace {

constexpr int kMaximumDepth = 200;

// --- Texts

struct CollatorCloser {
    void operator()(UCollator* collator) const { ucol_close(collator); }
};
using Collator = std::unique_ptr<UCollator, CollatorCloser>;

Collator openCollator(std::uint32_t considering) {
    UErrorCode status = U_ZERO_ERROR;
    Collator collator(ucol_open("", &status));
    const bool considersCase = considering & kConsiderCase, considersMarks = considering & kConsiderDiacriticals;
    ucol_setStrength(collator.get(), considersCase ? UCOL_TERTIARY : considersMarks ? UCOL_SECONDARY : UCOL_PRIMARY);
    if (considersCase && !considersMarks) {
        ucol_setStrength(collator.get(), UCOL_PRIMARY);
        ucol_setAttribute(collator.get(), UCOL_CASE_LEVEL, UCOL_ON, &status);
    }
    if (considering & kConsiderNumericStrings)
        ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
    return collator;
}

/// Collators are kept for the considerations used last on this thread.
const UCollator* collatorFor(std::uint32_t considering) {
    thread_local std::uint32_t last = UINT32_MAX;
    thread_local Collator collator;
    if (last != considering) {
        collator = openCollator(considering);
        last = considering;
    }
    return collator.get();
}

/// A text reduced to what is considered, each unit with the place it came from.
struct Reduced {
    std::u16string units;
    std::vector<std::uint32_t> places; // one more than units: the end
};

constexpr struct {
    UChar32 letter;
    std::u16string_view letters;
} kExpansions[] = {
    {U'Æ', u"AE"}, {U'æ', u"ae"}, {U'Œ', u"OE"}, {U'œ', u"oe"},  {U'ẞ', u"SS"},  {U'ß', u"ss"}, {U'Ĳ', u"IJ"}, {U'ĳ', u"ij"},
    {U'ﬀ', u"ff"}, {U'ﬁ', u"fi"}, {U'ﬂ', u"fl"}, {U'ﬃ', u"ffi"}, {U'ﬄ', u"ffl"}, {U'ﬅ', u"st"}, {U'ﬆ', u"st"},
};

bool isIgnored(UChar32 c, std::uint32_t considering) {
    if (!(considering & kConsiderWhiteSpace) && u_isUWhiteSpace(c))
        return true;
    const bool isDash = u_charType(c) == U_DASH_PUNCTUATION;
    if (!(considering & kConsiderHyphens) && isDash)
        return true;
    return !(considering & kConsiderPunctuation) && u_ispunct(c) && !isDash;
}

void appendReduced(Reduced& reduced, UChar32 c, std::uint32_t place, std::uint32_t considering) {
    if (isIgnored(c, considering))
        return;
    UErrorCode status = U_ZERO_ERROR;
    char16_t parts[24];
    std::int32_t count = 0;
    if (!(considering & kConsiderExpansion))
        for (const auto& row : kExpansions)
            if (row.letter == c)
                count = static_cast<std::int32_t>(row.letters.copy(parts, row.letters.size()));
    if (count == 0 && !(considering & kConsiderDiacriticals)) {
        count = unorm2_getDecomposition(unorm2_getNFDInstance(&status), c, parts, 24, &status);
        if (U_FAILURE(status))
            count = 0;
    }
    if (count <= 0) {
        count = 0;
        U16_APPEND_UNSAFE(parts, count, c);
    }
    for (std::int32_t i = 0; i < count;) {
        UChar32 part;
        U16_NEXT(parts, i, count, part);
        if (!(considering & kConsiderDiacriticals) && u_charType(part) == U_NON_SPACING_MARK)
            continue;
        if (!(considering & kConsiderCase))
            part = u_foldCase(part, U_FOLD_CASE_DEFAULT);
        char16_t units[2];
        std::int32_t length = 0;
        U16_APPEND_UNSAFE(units, length, part);
        for (std::int32_t k = 0; k < length; ++k) {
            reduced.units += units[k];
            reduced.places.push_back(place);
        }
    }
}

Reduced reduce(std::u16string_view text, std::uint32_t considering) {
    Reduced reduced;
    reduced.units.reserve(text.size());
    reduced.places.reserve(text.size() + 1);
    const auto length = static_cast<std::int32_t>(text.size());
    for (std::int32_t i = 0; i < length;) {
        const std::int32_t place = i;
        UChar32 c;
        U16_NEXT(text.data(), i, length, c);
        appendReduced(reduced, c, static_cast<std::uint32_t>(place), considering);
    }
    reduced.places.push_back(static_cast<std::uint32_t>(text.size()));
    return reduced;
}

constexpr std::uint32_t kAllUnits =
    kConsiderDiacriticals | kConsiderWhiteSpace | kConsiderHyphens | kConsiderExpansion | kConsiderPunctuation;

/// Only case may differ, and units stand for themselves.
bool foldsUnitByUnit(std::u16string_view text) {
    return std::all_of(text.begin(), text.end(), [](char16_t c) { return c < 0x80; });
}

char16_t asciiFolded(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
}

bool isAsciiAlphanumeric(std::u16string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char16_t c) { return (c >= u'0' && c <= u'9') || (asciiFolded(c) >= u'a' && asciiFolded(c) <= u'z'); });
}

// --- Values

bool relationHolds(Relation relation, int order) {
    switch (relation) {
    case Relation::Equal:
        return order == 0;
    case Relation::NotEqual:
        return order != 0;
    case Relation::Greater:
        return order > 0;
    case Relation::GreaterOrEqual:
        return order >= 0;
    case Relation::Less:
        return order < 0;
    case Relation::LessOrEqual:
        return order <= 0;
    }
    return false;
}

template<class T>
int ordered(T left, T right) {
    return left < right ? -1 : left > right ? 1 : 0;
}

bool isList(Value value) {
    return is<List>(value);
}

/// Does `part` stand in `whole`, item by item, at `at`?
bool matchesAt(Machine& machine, const List* whole, const List* part, std::uint32_t at) {
    for (std::uint32_t i = 0; i < part->count; ++i)
        if (!areEqual(machine, whole->items[at + i], part->items[i]))
            return false;
    return true;
}

/// The right side of a containment in a list: a list, or a value that counts as a list of one.
List* asPart(Machine& machine, Value value) {
    if (List* list = as<List>(value))
        return list;
    List* list = machine.heap().list(1);
    list->items[0] = value;
    list->count = 1;
    return list;
}

} // namespace

int compareTexts(Machine& machine, std::u16string_view left, std::u16string_view right) {
    const std::uint32_t considering = machine.considering();
    // Letters and digits sort by code when case is ignored; most keys of real scripts are of that kind.
    if (!(considering & (kConsiderCase | kConsiderNumericStrings)) && isAsciiAlphanumeric(left) && isAsciiAlphanumeric(right)) {
        const std::size_t common = std::min(left.size(), right.size());
        for (std::size_t i = 0; i < common; ++i)
            if (asciiFolded(left[i]) != asciiFolded(right[i]))
                return ordered(asciiFolded(left[i]), asciiFolded(right[i]));
        return ordered(left.size(), right.size());
    }
    const auto collate = [&](std::u16string_view a, std::u16string_view b) {
        return static_cast<int>(ucol_strcoll(collatorFor(considering), a.data(), static_cast<std::int32_t>(a.size()), b.data(),
                                             static_cast<std::int32_t>(b.size())));
    };
    if ((considering & kAllUnits) == kAllUnits)
        return collate(left, right);
    // What is ignored is taken out first; case and marks are the collator's.
    const std::uint32_t kept = considering | kConsiderCase | kConsiderDiacriticals;
    return collate(reduce(left, kept).units, reduce(right, kept).units);
}

bool areEqualTexts(Machine& machine, std::u16string_view left, std::u16string_view right) {
    if (left == right)
        return true;
    const std::uint32_t considering = machine.considering();
    if (considering & kConsiderNumericStrings)
        return compareTexts(machine, left, right) == 0;
    if ((considering & kAllUnits) == kAllUnits && foldsUnitByUnit(left) && foldsUnitByUnit(right)) {
        if (left.size() != right.size() || (considering & kConsiderCase))
            return false;
        return std::equal(left.begin(), left.end(), right.begin(), [](char16_t a, char16_t b) { return asciiFolded(a) == asciiFolded(b); });
    }
    return compareTexts(machine, left, right) == 0;
}

std::size_t findText(Machine& machine, std::u16string_view whole, std::u16string_view part, std::size_t start, std::size_t& length) {
    const std::uint32_t considering = machine.considering();
    length = part.size();
    if (part.empty() || start > whole.size())
        return part.empty() && start <= whole.size() ? start : std::u16string_view::npos;
    if ((considering & kAllUnits) == kAllUnits) {
        if (considering & kConsiderCase)
            return whole.find(part, start);
        if (foldsUnitByUnit(part)) { // what folds to ASCII from beyond it is only the Kelvin sign and the long s
            const char16_t first = asciiFolded(part[0]);
            const char16_t upper = first >= u'a' && first <= u'z' ? static_cast<char16_t>(first - 32) : first;
            for (std::size_t at = start; at + part.size() <= whole.size(); ++at) {
                if (whole[at] != first && whole[at] != upper)
                    continue;
                std::size_t i = 1;
                while (i < part.size() && asciiFolded(whole[at + i]) == asciiFolded(part[i]))
                    ++i;
                if (i == part.size())
                    return at;
            }
            return std::u16string_view::npos;
        }
    }
    const Reduced haystack = reduce(whole.substr(start), considering);
    const Reduced needle = reduce(part, considering);
    if (needle.units.empty()) {
        length = 0;
        return start;
    }
    const std::size_t at = haystack.units.find(needle.units);
    if (at == std::u16string::npos)
        return std::u16string_view::npos;
    const std::size_t first = haystack.places[at];
    length = haystack.places[at + needle.units.size()] - first;
    return start + first;
}

bool areEqual(Machine& machine, Value left, Value right, int depth) {
    if (left == right)
        return true;
    if (depth > kMaximumDepth)
        return false;
    if (left.isNumber() && right.isNumber())
        return left.asNumber() == right.asNumber();
    if (left.isConstant() && right.isConstant())
        return left.asCode() == right.asCode();
    if ((left.isCode() || left.isConstant()) && (right.isCode() || right.isConstant())) {
        // text, string and Unicode text are one class.
        const auto one = [](FourCharCode code) { return code == "TEXT"_4cc || code == "utxt"_4cc ? "ctxt"_4cc : code; };
        return one(left.asCode()) == one(right.asCode());
    }
    for (Value* side : {&left, &right})
        if (const Specifier* specifier = as<Specifier>(*side); specifier && isLocal(*side)) {
            *side = follow(machine, *side);
            if (side->isFailure())
                return false;
            return areEqual(machine, left, right, depth + 1);
        }
    if (!left.isObject() || !right.isObject() || left.asObject()->type != right.asObject()->type)
        return false;
    switch (left.asObject()->type) {
    case HeapType::Text:
        return areEqualTexts(machine, as<Text>(left)->view(), as<Text>(right)->view());
    case HeapType::List: {
        const List* a = as<List>(left);
        const List* b = as<List>(right);
        if (a->count != b->count)
            return false;
        for (std::uint32_t i = 0; i < a->count; ++i)
            if (!areEqual(machine, a->items[i], b->items[i], depth + 1))
                return false;
        return true;
    }
    case HeapType::Record: {
        Record* a = as<Record>(left);
        Record* b = as<Record>(right);
        if (a->entries.size() != b->entries.size())
            return false;
        return std::all_of(a->entries.begin(), a->entries.end(), [&](const Record::Entry& entry) {
            const Record::Entry* other = b->find(entry.key);
            return other && areEqual(machine, entry.value, other->value, depth + 1);
        });
    }
    case HeapType::Date:
        return as<Date>(left)->seconds == as<Date>(right)->seconds;
    case HeapType::Data:
        return as<Data>(left)->bytes == as<Data>(right)->bytes &&
               (as<Data>(left)->dataType == as<Data>(right)->dataType || (isFile(left) && isFile(right)));
    case HeapType::Application:
        return as<Application>(left)->name == as<Application>(right)->name &&
               as<Application>(left)->identifier == as<Application>(right)->identifier;
    case HeapType::Specifier: {
        const Specifier* a = as<Specifier>(left);
        const Specifier* b = as<Specifier>(right);
        return a->form == b->form && areEqual(machine, a->container, b->container, depth + 1) && areEqual(machine, a->a, b->a, depth + 1) &&
               areEqual(machine, a->b, b->b, depth + 1) && areEqual(machine, a->c, b->c, depth + 1);
    }
    default:
        return false;
    }
}

Value compare(Machine& machine, Relation relation, Value left, Value right) {
    if (!followBoth(machine, left, right))
        return Value::failure();
    for (Value side : {left, right})
        if (side.isUndefined())
            return machine.raise(-2763, u"No result was returned from some part of this expression.");
    if (relation == Relation::Equal || relation == Relation::NotEqual)
        return Value::boolean(areEqual(machine, left, right) == (relation == Relation::Equal));

    // The right operand is made what the left one is. Months and weekdays are in the order of the calendar.
    if ((left.isCode() || left.isConstant()) && numberOfDateConstant(left.asCode()))
        left = Value::integer(numberOfDateConstant(left.asCode()));
    if (left.isNumber()) {
        const Value number = coerce(machine, right, Value::code("nmbr"_4cc));
        return number.isFailure() ? number : Value::boolean(relationHolds(relation, ordered(left.asNumber(), number.asNumber())));
    }
    if (const Text* text = as<Text>(left)) {
        const Value other = coerce(machine, right, Value::code("ctxt"_4cc));
        return other.isFailure() ? other
                                 : Value::boolean(relationHolds(relation, compareTexts(machine, text->view(), as<Text>(other)->view())));
    }
    if (const Date* date = as<Date>(left)) {
        const Value other = coerce(machine, right, Value::code("ldt "_4cc));
        return other.isFailure() ? other : Value::boolean(relationHolds(relation, ordered(date->seconds, as<Date>(other)->seconds)));
    }
    if (const List* list = as<List>(left); list && list->count == 1)
        return compare(machine, relation, list->items[0], right);
    return cannotMake(machine, left, "nmbr"_4cc);
}

Value startsWith(Machine& machine, Value left, Value right) {
    if (!followBoth(machine, left, right))
        return Value::failure();
    if (const List* whole = as<List>(left)) {
        const List* part = asPart(machine, right);
        return Value::boolean(part->count <= whole->count && matchesAt(machine, whole, part, 0));
    }
    const Value text = coerce(machine, left, Value::code("ctxt"_4cc));
    const Value part = text.isFailure() ? text : coerce(machine, right, Value::code("ctxt"_4cc));
    if (part.isFailure())
        return part;
    std::size_t length;
    const auto partView = as<Text>(part)->view();
    return Value::boolean(partView.empty() || findText(machine, as<Text>(text)->view(), partView, 0, length) == 0);
}

Value endsWith(Machine& machine, Value left, Value right) {
    if (!followBoth(machine, left, right))
        return Value::failure();
    if (const List* whole = as<List>(left)) {
        const List* part = asPart(machine, right);
        return Value::boolean(part->count <= whole->count && matchesAt(machine, whole, part, whole->count - part->count));
    }
    const Value text = coerce(machine, left, Value::code("ctxt"_4cc));
    const Value part = text.isFailure() ? text : coerce(machine, right, Value::code("ctxt"_4cc));
    if (part.isFailure())
        return part;
    const Reduced whole = reduce(as<Text>(text)->view(), machine.considering());
    const Reduced tail = reduce(as<Text>(part)->view(), machine.considering());
    return Value::boolean(whole.units.ends_with(tail.units));
}

Value contains(Machine& machine, Value left, Value right) {
    if (!followBoth(machine, left, right))
        return Value::failure();
    if (isList(left)) {
        const List* whole = as<List>(left);
        const List* part = asPart(machine, right);
        for (std::uint32_t at = 0; at + part->count <= whole->count; ++at)
            if (matchesAt(machine, whole, part, at))
                return Value::boolean(true);
        return Value::boolean(false);
    }
    if (Record* whole = as<Record>(left)) {
        const Record* part = as<Record>(right);
        if (!part)
            return cannotMake(machine, right, "reco"_4cc);
        return Value::boolean(std::all_of(part->entries.begin(), part->entries.end(), [&](const Record::Entry& entry) {
            const Record::Entry* other = whole->find(entry.key);
            return other && areEqual(machine, entry.value, other->value);
        }));
    }
    const Value text = coerce(machine, left, Value::code("ctxt"_4cc));
    const Value part = text.isFailure() ? text : coerce(machine, right, Value::code("ctxt"_4cc));
    if (part.isFailure())
        return part;
    std::size_t length;
    return Value::boolean(findText(machine, as<Text>(text)->view(), as<Text>(part)->view(), 0, length) != std::u16string_view::npos);
}

} // namespace quoddle::language

// SPDX-License-Identifier: MIT
// Comparisons of values, and of texts under considerations.
#include "platform/applescript/language/Coercion.h"
#include "platform/applescript/language/Dates.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/language/Files.h"
#include "platform/applescript/language/Operators.h"
#include "platform/applescript/language/References.h"
#include "platform/base/Text.h"
#include "platform/base/TextSearch.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <unicode/ucol.h>
#include <unordered_set>

namespace quoddle::language {

using namespace machine;

namespace {

constexpr int kMostListsOfOne = 200;

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

/// The collator for the considerations. Each thread keeps the one that it used last.
const UCollator* collatorFor(std::uint32_t considering) {
    thread_local std::uint32_t last = UINT32_MAX;
    thread_local Collator collator;
    if (last != considering) {
        collator = openCollator(considering);
        last = considering;
    }
    return collator.get();
}

bool isAlphanumericASCII(char16_t c) {
    return (c >= u'0' && c <= u'9') || (foldedASCII(c) >= u'a' && foldedASCII(c) <= u'z');
}

/// Whether the collator ignores a control character.
bool isBareControl(char16_t c) {
    return c < u'\t' || (c > u'\r' && c < u' ') || c == 0x7F;
}

bool isPlainASCII(char16_t c) {
    return c < 0x80 && !isBareControl(c);
}

std::u16string controlsOf(std::u16string_view text) {
    std::u16string controls;
    std::copy_if(text.begin(), text.end(), std::back_inserter(controls), isBareControl);
    return controls;
}

/// The place where the texts first differ by more than case, or where the shorter one ends. npos when a character up to and including that
/// place is not `isPlain`, so that the collator has to decide. Looks no further than that place, however long the texts are.
template<class IsPlain>
std::size_t firstDifference(std::u16string_view left, std::u16string_view right, IsPlain isPlain) {
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (!isPlain(left[i]) || !isPlain(right[i]))
            return std::u16string_view::npos;
        if (foldedASCII(left[i]) != foldedASCII(right[i]))
            return i;
    }
    const std::u16string_view rest = (left.size() > right.size() ? left : right).substr(common);
    return rest.empty() || isPlain(rest[0]) ? common : std::u16string_view::npos;
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

bool beginsWith(Machine& machine, std::span<const Value> items, std::span<const Value> part) {
    return std::equal(part.begin(), part.end(), items.begin(), [&](Value a, Value b) { return areEqual(machine, b, a); });
}

std::span<const Value> itemsOf(const List* list) {
    return {list->items, list->count};
}

/// The right side of "contains" and its like as a list: a value that is not a list counts as a list of one.
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
    // A fast path for most keys of real scripts: with case ignored, ASCII letters and digits sort by code.
    if (!(considering & (kConsiderCase | kConsiderNumericStrings))) {
        const std::size_t at = firstDifference(left, right, isAlphanumericASCII);
        if (at != std::u16string_view::npos)
            return at < left.size() && at < right.size() ? ordered(foldedASCII(left[at]), foldedASCII(right[at]))
                                                         : ordered(left.size(), right.size());
    }
    const auto collate = [&](std::u16string_view a, std::u16string_view b) {
        return static_cast<int>(ucol_strcoll(collatorFor(considering), a.data(), static_cast<std::int32_t>(a.size()), b.data(),
                                             static_cast<std::int32_t>(b.size())));
    };
    if (considersAllUnits(considering)) {
        const int order = collate(left, right);
        if (order != 0 || considering & kConsiderNumericStrings)
            return order;
        return controlsOf(left).compare(controlsOf(right)); // the texts differ only by control characters, which the collator ignores
    }
    // Characters that are ignored are taken out first; the collator ignores case and marks.
    const std::uint32_t kept = considering | kConsiderCase | kConsiderDiacriticals;
    return collate(reduceText(left, kept).units, reduceText(right, kept).units);
}

bool areEqualTexts(Machine& machine, std::u16string_view left, std::u16string_view right) {
    if (left == right)
        return true;
    const std::uint32_t considering = machine.considering();
    if (considering & kConsiderNumericStrings)
        return compareTexts(machine, left, right) == 0;
    if (considersAllUnits(considering)) {
        const std::size_t at = firstDifference(left, right, isPlainASCII);
        if (at != std::u16string_view::npos) // with case considered only identical texts are equal, and these are not
            return at == left.size() && at == right.size() && !(considering & kConsiderCase);
    }
    return compareTexts(machine, left, right) == 0;
}

namespace {

/// One comparison of two values for equality. The first difference ends it. Values may be nested as deeply as memory allows: what is still
/// to be compared is kept in a list of its own, not on the thread's stack.
class EqualityTest {
public:
    explicit EqualityTest(Machine& machine) : mMachine(machine) {}

    bool areEqual(Value left, Value right);

private:
    /// Two lists, records or specifiers of one shape, of which some parts are still to be compared.
    struct Open {
        const HeapObject* left;
        const HeapObject* right;
        std::size_t count;
        std::size_t next = 0;
    };
    using Pair = std::pair<const HeapObject*, const HeapObject*>;
    struct PairHash {
        std::size_t operator()(const Pair& pair) const {
            return std::hash<const void*>()(pair.first) * 31 + std::hash<const void*>()(pair.second);
        }
    };

    bool mayBeEqual(Value left, Value right);
    bool mayBeEqualObjects(const HeapObject* left, const HeapObject* right);
    bool open(const HeapObject* left, const HeapObject* right, std::size_t leftCount, std::size_t rightCount);
    bool compareNextPart(Open& open);
    bool isKnown(const HeapObject* left, const HeapObject* right);

    static constexpr std::size_t kPairsNotNoted = 10000;

    Machine& mMachine;
    std::vector<Open> mOpen;
    std::size_t mPairs = 0;
    std::unordered_set<Pair, PairHash> mKnown;
};

bool EqualityTest::areEqual(Value left, Value right) {
    if (!mayBeEqual(left, right))
        return false;
    while (!mOpen.empty()) {
        if (mOpen.back().next == mOpen.back().count)
            mOpen.pop_back();
        else if (!compareNextPart(mOpen.back()))
            return false;
    }
    return true;
}

/// Whether this pair has been, or is being, compared. Otherwise lists that hold a list many times, or themselves, would take for ever.
bool EqualityTest::isKnown(const HeapObject* left, const HeapObject* right) {
    return ++mPairs > kPairsNotNoted && !mKnown.emplace(left, right).second;
}

/// False when the values differ. The parts of lists, records and specifiers are left open.
bool EqualityTest::mayBeEqual(Value left, Value right) {
    if (left == right)
        return true;
    if (left.isNumber() && right.isNumber())
        return left.asNumber() == right.asNumber();
    if (left.isConstant() && right.isConstant())
        return left.asCode() == right.asCode();
    if ((left.isCode() || left.isConstant()) && (right.isCode() || right.isConstant())) {
        // The classes text, string and Unicode text are equal.
        const auto one = [](FourCharCode code) { return code == "TEXT"_4cc || code == "utxt"_4cc ? "ctxt"_4cc : code; };
        return one(left.asCode()) == one(right.asCode());
    }
    return left.isObject() && right.isObject() && left.asObject()->type == right.asObject()->type &&
           mayBeEqualObjects(left.asObject(), right.asObject());
}

bool EqualityTest::mayBeEqualObjects(const HeapObject* left, const HeapObject* right) {
    switch (left->type) {
    case HeapType::Text:
        return areEqualTexts(mMachine, static_cast<const Text*>(left)->view(), static_cast<const Text*>(right)->view());
    case HeapType::List:
        return open(left, right, static_cast<const List*>(left)->count, static_cast<const List*>(right)->count);
    case HeapType::Record:
        return open(left, right, static_cast<const Record*>(left)->entries.size(), static_cast<const Record*>(right)->entries.size());
    case HeapType::Specifier:
        return static_cast<const Specifier*>(left)->form == static_cast<const Specifier*>(right)->form && open(left, right, 4, 4);
    case HeapType::Date:
        return static_cast<const Date*>(left)->seconds == static_cast<const Date*>(right)->seconds;
    case HeapType::Data: {
        const auto* a = static_cast<const Data*>(left);
        const auto* b = static_cast<const Data*>(right);
        return a->bytes == b->bytes && (a->dataType == b->dataType || (isFile(Value::object(a)) && isFile(Value::object(b))));
    }
    case HeapType::Application: {
        const auto* a = static_cast<const Application*>(left);
        const auto* b = static_cast<const Application*>(right);
        return a->name == b->name && a->identifier == b->identifier;
    }
    case HeapType::Handler: {
        const auto* a = static_cast<const Handler*>(left);
        const auto* b = static_cast<const Handler*>(right);
        return a->source == b->source && a->home == b->home;
    }
    default:
        return false;
    }
}

bool EqualityTest::open(const HeapObject* left, const HeapObject* right, std::size_t leftCount, std::size_t rightCount) {
    if (leftCount != rightCount)
        return false;
    if (!isKnown(left, right))
        mOpen.push_back({left, right, leftCount});
    return true;
}

bool EqualityTest::compareNextPart(Open& open) {
    const std::size_t index = open.next++;
    if (open.left->type == HeapType::List)
        return mayBeEqual(static_cast<const List*>(open.left)->items[index], static_cast<const List*>(open.right)->items[index]);
    if (open.left->type == HeapType::Record) {
        const Record::Entry& entry = static_cast<const Record*>(open.left)->entries[index];
        const Record::Entry* other = static_cast<const Record*>(open.right)->find(entry.key);
        return other && mayBeEqual(entry.value, other->value);
    }
    static constexpr Value Specifier::*kParts[] = {&Specifier::container, &Specifier::a, &Specifier::b, &Specifier::c};
    return mayBeEqual(static_cast<const Specifier*>(open.left)->*kParts[index], static_cast<const Specifier*>(open.right)->*kParts[index]);
}

} // namespace

bool areEqual(Machine& machine, Value left, Value right) {
    // Numbers and texts come first: most values are of these classes, and searches in lists compare very many of them.
    if (left.isNumber() && right.isNumber())
        return left.asNumber() == right.asNumber();
    if (const Text* text = as<Text>(left), *other = as<Text>(right); text && other)
        return areEqualTexts(machine, text->view(), other->view());
    return EqualityTest(machine).areEqual(left, right);
}

Value compare(Machine& machine, Relation relation, Value left, Value right) {
    // QUIRK: a reference equals the same reference and never the value that it refers to, while other relations follow it; scripts compare
    // references for identity.
    const bool asksEquality = relation == Relation::Equal || relation == Relation::NotEqual;
    if (asksEquality) {
        for (Value* side : {&left, &right})
            if (*side = evaluate(machine, *side, Evaluate::Fully); side->isFailure())
                return *side;
    } else if (!followBoth(machine, left, right)) {
        return Value::failure();
    }
    for (Value side : {left, right})
        if (side.isUndefined())
            return machine.raise(-2763, u"No result was returned from some part of this expression.");
    if (asksEquality)
        return Value::boolean(areEqual(machine, left, right) == (relation == Relation::Equal));

    // QUIRK: a list of one is ordered like its item; scripts compare results of `whose` so. The depth is bounded, because such a list may
    // hold itself.
    int depth = 0;
    for (const List* list = as<List>(left); list && list->count == 1 && depth < kMostListsOfOne; list = as<List>(left), ++depth) {
        left = list->items[0];
        if (!followBoth(machine, left, right))
            return Value::failure();
    }
    // The right operand is coerced to the class of the left one. Months and weekdays are ordered as in the calendar.
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
    return cannotMake(machine, left, "nmbr"_4cc);
}

Value startsWith(Machine& machine, Value left, Value right) {
    if (!followBoth(machine, left, right))
        return Value::failure();
    if (const List* whole = as<List>(left)) {
        const List* part = asPart(machine, right);
        return Value::boolean(part->count <= whole->count && beginsWith(machine, itemsOf(whole), itemsOf(part)));
    }
    const Value text = coerce(machine, left, Value::code("ctxt"_4cc));
    const Value part = text.isFailure() ? text : coerce(machine, right, Value::code("ctxt"_4cc));
    if (part.isFailure())
        return part;
    return Value::boolean(startsWithText(as<Text>(text)->view(), as<Text>(part)->view(), machine.considering()));
}

Value endsWith(Machine& machine, Value left, Value right) {
    if (!followBoth(machine, left, right))
        return Value::failure();
    if (const List* whole = as<List>(left)) {
        const List* part = asPart(machine, right);
        return Value::boolean(part->count <= whole->count && beginsWith(machine, itemsOf(whole).last(part->count), itemsOf(part)));
    }
    const Value text = coerce(machine, left, Value::code("ctxt"_4cc));
    const Value part = text.isFailure() ? text : coerce(machine, right, Value::code("ctxt"_4cc));
    if (part.isFailure())
        return part;
    return Value::boolean(endsWithText(as<Text>(text)->view(), as<Text>(part)->view(), machine.considering()));
}

Value contains(Machine& machine, Value left, Value right) {
    left = follow(machine, left);
    if (left.isFailure())
        return left;
    // A list of an application's objects contains the object itself, which nobody is asked for.
    const bool isObject = isList(left) && is<Specifier>(right) && !isLocal(right);
    right = isObject ? evaluate(machine, right, Evaluate::Fully) : follow(machine, right);
    if (right.isFailure())
        return right;
    if (isList(left)) {
        const List* whole = as<List>(left);
        const List* part = asPart(machine, right);
        const auto equal = [&](Value a, Value b) { return areEqual(machine, a, b); };
        return Value::boolean(findSequence(itemsOf(whole), itemsOf(part), 0, equal) != kNotFound);
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
    TextSearch search(as<Text>(text)->view(), machine.considering());
    return Value::boolean(search.find(as<Text>(part)->view(), 0, length) != kNotFound);
}

} // namespace quoddle::language

// SPDX-License-Identifier: MIT
// Elements, by index, range, every and some, and following specifiers. Properties are in Properties.cpp.
#include "platform/applescript/language/References.h"

#include "platform/applescript/language/Coercion.h"
#include "platform/applescript/language/Commands.h"
#include "platform/applescript/language/Dates.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/language/Files.h"
#include "platform/applescript/language/Frameworks.h"
#include "platform/applescript/language/TextElements.h"
#include "platform/applescript/syntax/SourceText.h"
#include "platform/base/DateText.h"

#include <random>

namespace quoddle::language {

using namespace machine;

namespace {

constexpr std::size_t kMaximumDepth = 200;
constexpr std::size_t kMaximumNesting = 100;
const Value kNumber = Value::code("nmbr"_4cc); // "number of x" counts x

Value specifier(Machine& machine, Specifier::Form form, Value container, Value a = {}, Value b = {}, Value c = {}) {
    return Value::object(machine.heap().make<Specifier>(form, container, a, b, c));
}

Value cannotGet(Machine& machine, Value what, OSStatus number = errAENoSuchObject) {
    const std::u16string tail = number == errAEIllegalIndex ? u". Invalid index." : u".";
    return machine.raise(number, u"Can’t get " + inMessage(machine, what) + tail, what);
}

Value slice(Machine& machine, const Text* text, Span span) {
    return Value::object(machine.heap().substring(text, span.start, span.length));
}

/// The places of the items of a list that belong to a class; all places for "item".
std::vector<std::uint32_t> placesOf(const List* list, FourCharCode elementClass) {
    std::vector<std::uint32_t> places;
    for (std::uint32_t i = 0; i < list->count; ++i)
        if (isOfClass(list->items[i], elementClass))
            places.push_back(i);
    return places;
}

Value listOf(Machine& machine, const std::vector<Value>& values) {
    if (values.size() > Heap::kMaximumListLength)
        return tooLarge(machine);
    List* list = machine.heap().list(values.size());
    std::copy(values.begin(), values.end(), list->items);
    list->count = static_cast<std::uint32_t>(values.size());
    return Value::object(list);
}

/// The colon path of a file; any other value is a path already.
std::u16string colonPathOf(Machine& machine, Value file) {
    const Data* data = as<Data>(file);
    return data ? hfsPath(*data) : humanDisplay(machine, file);
}

/// Makes the objects that a class and a text describe by themselves: files, dates, applications. Failure, with nothing raised and `isOne`
/// false, when the class is not such a one.
Value madeFromText(Machine& machine, FourCharCode elementClass, Value key, bool& isOne) {
    isOne = true;
    switch (elementClass) {
    case "file"_4cc:
    case "furl"_4cc:
    case "psxf"_4cc:
        return coerce(machine, key, Value::code(elementClass));
    case "alis"_4cc: {
        const Value file = follow(machine, key);
        if (file.isFailure())
            return file;
        const Value alias = makeFile(machine, file, "alis"_4cc);
        return alias.isFailure() ? machine.raise(fnfErr, u"File alias " + colonPathOf(machine, file) + u" wasn’t found.", file) : alias;
    }
    case "ldt "_4cc: {
        const Value text = coerce(machine, key, Value::code("ctxt"_4cc));
        if (text.isFailure())
            return text;
        if (auto seconds = dateOfText(as<Text>(text)->view(), currentSeconds()))
            return Value::object(machine.heap().make<Date>(*seconds));
        return invalidDate(machine, text);
    }
    case "capp"_4cc: {
        const Value name = coerce(machine, key, Value::code("ctxt"_4cc));
        if (name.isFailure())
            return name;
        Application* application = machine.heap().make<Application>();
        application->name = as<Text>(name)->view();
        return Value::object(application);
    }
    default:
        isOne = false;
        return Value::failure();
    }
}

bool isItem(const Specifier& specifier) {
    return specifier.form == Specifier::Form::Element && specifier.a == Value::code("cobj"_4cc);
}

/// The place of the index-th item of a class, from the end when negative; kNowhere when there is none.
constexpr std::uint32_t kNowhere = UINT32_MAX;
std::uint32_t placeInList(const List* list, FourCharCode elementClass, std::int64_t index) {
    if (elementClass == "cobj"_4cc) {
        const std::int64_t place = index < 0 ? list->count + index : index - 1;
        return index != 0 && place >= 0 && place < list->count ? static_cast<std::uint32_t>(place) : kNowhere;
    }
    const std::vector<std::uint32_t> places = placesOf(list, elementClass);
    const auto count = static_cast<std::int64_t>(places.size());
    const std::int64_t place = index < 0 ? count + index : index - 1;
    return index != 0 && place >= 0 && place < count ? places[static_cast<std::size_t>(place)] : kNowhere;
}

/// Sets `span` to the first and last character, or item, of the index-th element of a class in its container. False when there is none.
bool spanOf(Machine& machine, Value container, FourCharCode elementClass, std::int64_t index, Span& span) {
    if (const Text* text = as<Text>(container))
        return isTextElement(elementClass) && elementAt(machine, text, elementClass, index, span);
    const List* list = as<List>(container);
    const std::uint32_t place = list ? placeInList(list, elementClass, index) : kNowhere;
    span = {place, 1};
    return place != kNowhere;
}

/// Sets `span` to the place of a range's boundary in its container. False, with nothing raised, when the container has no such element.
bool boundary(Machine& machine, Value container, Value elementClass, Value bound, Span& span) {
    if (const Specifier* element = as<Specifier>(bound);
        element && element->form == Specifier::Form::Element && element->container == container && element->a.isCode()) {
        std::int64_t index;
        if (!wholeOf(machine, element->b, index))
            return false;
        if (spanOf(machine, container, element->a.asCode(), index, span))
            return true;
        cannotGet(machine, bound, errAEIllegalIndex);
        return false;
    }
    if (const Specifier* place = as<Specifier>(bound);
        place && (place->form == Specifier::Form::Beginning || place->form == Specifier::Form::End)) {
        const Text* text = as<Text>(container);
        const List* list = as<List>(container);
        const std::uint32_t length = text ? text->length : list ? list->count : 0;
        span = place->form == Specifier::Form::Beginning ? Span{0, length ? 1u : 0u} : Span{length ? length - 1 : 0, length ? 1u : 0u};
        return true;
    }
    std::int64_t index;
    return wholeOf(machine, bound, index) && spanOf(machine, container, elementClass.asCode(), index, span);
}

/// The class of the elements: "string 2 thru 3 of x" means text like "text 2 thru 3 of x".
Value elementClassOf(const Specifier* whole) {
    const bool isText = whole->a == Value::code("TEXT"_4cc) || whole->a == Value::code("utxt"_4cc);
    return isText ? Value::code("ctxt"_4cc) : whole->a;
}

Value range(Machine& machine, Value container, const Specifier* whole) {
    const Value elementClass = elementClassOf(whole);
    Span from{}, to{};
    machine.error() = ScriptError();
    if (!is<List>(container) && !(is<Text>(container) && isTextElement(elementClass.asCode())))
        return cannotGet(machine, Value::object(whole));
    if (!boundary(machine, container, elementClass, whole->b, from) || !boundary(machine, container, elementClass, whole->c, to))
        return machine.error().number ? Value::failure() : cannotGet(machine, Value::object(whole));
    if (from.start > to.start)
        std::swap(from, to);
    if (List* list = as<List>(container)) {
        if (elementClass == Value::code("cobj"_4cc))
            return Value::object(machine.heap().part(list, from.start, to.start - from.start + 1));
        List* part = machine.heap().list(to.start - from.start + 1);
        for (std::size_t i = from.start; i <= to.start; ++i)
            if (isOfClass(list->items[i], elementClass.asCode()))
                part->items[part->count++] = list->items[i];
        return Value::object(part);
    }
    const Text* text = as<Text>(container);
    const Span covered{from.start, to.start + to.length - from.start};
    if (elementClass == Value::code("ctxt"_4cc))
        return slice(machine, text, covered);
    std::vector<Value> parts;
    forEachElementWithin(machine, text, elementClass.asCode(), covered, [&](Span span) {
        parts.push_back(slice(machine, text, span));
        return parts.size() <= Heap::kMaximumListLength;
    });
    return listOf(machine, parts);
}

Value every(Machine& machine, Value container, Value elementClass, Value what) {
    const FourCharCode code = elementClass.asCode();
    if (const List* list = as<List>(container)) {
        if (isTextElement(code) && code != "ctxt"_4cc &&
            code != "cobj"_4cc) // words and the like are parts of a text and never items of a list
            return cannotGet(machine, what);
        std::vector<Value> items;
        for (std::uint32_t place : placesOf(list, code))
            items.push_back(list->items[place]);
        return listOf(machine, items);
    }
    if (const Text* text = as<Text>(container); text && isTextElement(code)) {
        if (code == "ctxt"_4cc)
            return container;
        std::vector<Value> parts;
        forEachElement(machine, text, code, [&](Span span) {
            parts.push_back(slice(machine, text, span));
            return parts.size() <= Heap::kMaximumListLength; // more items than a list can hold are an error
        });
        return listOf(machine, parts);
    }
    if (const Record* record = as<Record>(container); record && code == "cobj"_4cc) {
        std::vector<Value> items;
        for (const Record::Entry& entry : record->entries)
            items.push_back(entry.value);
        return listOf(machine, items);
    }
    return cannotGet(machine, what);
}

/// The value of a specifier that belongs to this machine.
Value resolve(Machine& machine, const Specifier* what, std::size_t depth) {
    if (depth > kMaximumDepth)
        return machine.raise(errOSAStackOverflow, u"Stack overflow.");
    const Value whole = Value::object(what);
    Value container = what->container;
    const Specifier* holder = as<Specifier>(container);
    if (holder) {
        container = resolve(machine, holder, depth + 1);
        if (container.isFailure())
            return container;
    }
    const bool asksList = what->form == Specifier::Form::Property && isPropertyOfList(what->a);
    switch (what->form) {
    case Specifier::Form::Property:
    case Specifier::Form::Element:
        if (what->a == kNumber && what->form == Specifier::Form::Property && holder && isMany(holder->form))
            return count(machine, container);
        // "length of every word" gives one answer for each word. But "item 2 of words" is the second word.
        if (holder && isMany(holder->form) && is<List>(container) && !isItem(*what) && !asksList) {
            const List* many = as<List>(container);
            std::vector<Value> answers;
            for (std::uint32_t i = 0; i < many->count; ++i) {
                const Value answer = what->form == Specifier::Form::Property
                                         ? getProperty(machine, many->items[i], what->a, Evaluate::Fully)
                                         : getElement(machine, many->items[i], what->a, what->b, Evaluate::Fully);
                if (answer.isFailure())
                    return answer;
                answers.push_back(answer);
            }
            return listOf(machine, answers);
        }
        return what->form == Specifier::Form::Property ? getProperty(machine, container, what->a, Evaluate::Fully)
                                                       : getElement(machine, container, what->a, what->b, Evaluate::Fully);
    case Specifier::Form::Every:
        // "characters of every word" gives a list for each word.
        if (holder && isMany(holder->form) && is<List>(container) && what->a.isCode() && what->a != Value::code("cobj"_4cc) &&
            isTextElement(what->a.asCode())) {
            const List* many = as<List>(container);
            std::vector<Value> answers;
            for (std::uint32_t i = 0; i < many->count; ++i) {
                const Value answer = every(machine, many->items[i], what->a, whole);
                if (answer.isFailure())
                    return answer;
                answers.push_back(answer);
            }
            return listOf(machine, answers);
        }
        return every(machine, container, what->a, whole);
    case Specifier::Form::Some: {
        const Value all = every(machine, container, what->a, whole);
        const List* list = as<List>(all);
        if (!list)
            return all;
        if (list->count == 0)
            return cannotGet(machine, whole);
        static thread_local std::mt19937 generator(std::random_device{}());
        return list->items[std::uniform_int_distribution<std::uint32_t>(0, list->count - 1)(generator)];
    }
    case Specifier::Form::Middle: {
        const Value all = every(machine, container, what->a, whole);
        const List* list = as<List>(all);
        if (!list)
            return all;
        return list->count ? list->items[(list->count - 1) / 2] : cannotGet(machine, whole);
    }
    case Specifier::Form::Range:
        return range(machine, container, what);
    case Specifier::Form::ElementByKey:
        if (what->a == Value::code("capp"_4cc)) {
            const Value identifier = coerce(machine, what->b, Value::code("ctxt"_4cc));
            if (identifier.isFailure())
                return identifier;
            Application* application = machine.heap().make<Application>();
            application->identifier = as<Text>(identifier)->view();
            return Value::object(application);
        }
        if (what->a == Value::code("cha "_4cc) || what->a == Value::code("ctxt"_4cc) || what->a == Value::code("TEXT"_4cc) ||
            what->a == Value::code("utxt"_4cc))
            return textFromCodePoints(machine, what->b);
        return cannotGet(machine, whole);
    case Specifier::Form::Before:
    case Specifier::Form::After: {
        const Specifier* element = as<Specifier>(what->container);
        if (!element || element->form != Specifier::Form::Element || what->a == Value::code(kInsertionLocation))
            return cannotGet(machine, whole);
        std::int64_t index;
        if (!wholeOf(machine, element->b, index))
            return Value::failure();
        const std::int64_t next = index + (what->form == Specifier::Form::Before ? -1 : 1);
        const Value place = Value::integer(static_cast<std::int32_t>(std::clamp<std::int64_t>(next, INT32_MIN, INT32_MAX)));
        const Value outer = follow(machine, element->container);
        return outer.isFailure() ? outer : getElement(machine, outer, what->a, place, Evaluate::Fully);
    }
    case Specifier::Form::Beginning:
    case Specifier::Form::End: {
        const List* list = as<List>(container);
        if (!list || list->count == 0)
            return cannotGet(machine, whole);
        return list->items[what->form == Specifier::Form::Beginning ? 0 : list->count - 1];
    }
    default:
        return cannotGet(machine, whole);
    }
}

} // namespace

bool isMany(Specifier::Form form) {
    return form == Specifier::Form::Every || form == Specifier::Form::Range || form == Specifier::Form::Filter;
}

/// Whether an object never is an element of the target of a `tell`: applications know no POSIX files and hold no applications, and an alias
/// with a path is that file whoever is told.
bool isOfLanguage(Value elementClass, Value key) {
    return elementClass == Value::code("psxf"_4cc) || elementClass == Value::code("capp"_4cc) ||
           (elementClass == Value::code("alis"_4cc) && is<Text>(key));
}

bool isLocal(Value container) {
    for (std::size_t depth = 0; depth < kMaximumDepth; ++depth) {
        if (is<Application>(container))
            return false;
        const Specifier* specifier = as<Specifier>(container);
        if (!specifier)
            return true;
        const bool isElement = specifier->form == Specifier::Form::Element || specifier->form == Specifier::Form::ElementByKey;
        if (isElement && isOfLanguage(specifier->a, specifier->b))
            return true;
        if (specifier->form == Specifier::Form::Examined || specifier->form == Specifier::Form::Test)
            return false;
        container = specifier->container;
    }
    return true;
}

Value follow(Machine& machine, Value value) {
    // This function nests on the thread's own stack, so the depth is bounded: an index may itself be a reference, and applications may
    // answer with references.
    static thread_local std::size_t nesting = 0;
    struct Level {
        Level() { ++nesting; }
        ~Level() { --nesting; }
    } level;
    if (nesting > kMaximumNesting)
        return machine.raise(errOSAStackOverflow, u"Stack overflow.");
    for (std::size_t depth = 0; depth < kMaximumDepth; ++depth) {
        const Specifier* specifier = as<Specifier>(value);
        if (!specifier)
            return value;
        value = isLocal(value) ? resolve(machine, specifier, 0) : getFromApplication(machine, value);
        if (value.isFailure() || !is<Specifier>(value) || !isLocal(value))
            return value;
    }
    return machine.raise(errOSAStackOverflow, u"Stack overflow.");
}

namespace {

/// The list with the raw specifiers in it replaced by what they name: "{name, size} of file 1" asks for one after the other.
Value evaluateItems(Machine& machine, const List* list) {
    const Heap::Hold hold(machine.heap());
    List* values = machine.heap().list(list->count);
    for (std::uint32_t i = 0; i < list->count; ++i) {
        const Value value = is<Specifier>(list->items[i]) ? evaluate(machine, list->items[i], Evaluate::Fully) : list->items[i];
        if (value.isFailure())
            return value;
        values->items[values->count++] = value;
    }
    return Value::object(values);
}

/// Sets each of the objects in a list to the value at the same place: "set {name, size} of file 1 to {…}".
bool setEach(Machine& machine, const List* targets, Value value) {
    const List* values = as<List>(value);
    for (std::uint32_t i = 0; i < targets->count; ++i) {
        if (!values || i >= values->count) {
            const Value missing = specifier(machine, Specifier::Form::Element, value, Value::code("cobj"_4cc),
                                            Value::integer(static_cast<std::int32_t>(i) + 1));
            cannotGet(machine, missing);
            return false;
        }
        if (!setSpecifier(machine, targets->items[i], values->items[i]))
            return false;
    }
    return true;
}

} // namespace

bool followBoth(Machine& machine, Value& left, Value& right) {
    left = follow(machine, left);
    if (left.isFailure())
        return false;
    right = follow(machine, right);
    return !right.isFailure();
}

Value evaluate(Machine& machine, Value value, Evaluate how) {
    if (const List* list = as<List>(value); list && how == Evaluate::Fully)
        return evaluateItems(machine, list);
    const Specifier* specifier = as<Specifier>(value);
    if (!specifier || specifier->flags & Specifier::kIsReference)
        return value;
    if (isLocal(value))
        return resolve(machine, specifier, 0);
    return how == Evaluate::Fully ? getFromApplication(machine, value) : value;
}

Value getElement(Machine& machine, Value container, Value elementClass, Value index, Evaluate how) {
    if (how != Evaluate::Never) {
        if (bool isOne; isOfLanguage(elementClass, index))
            return madeFromText(machine, elementClass.asCode(), index, isOne);
        const Specifier* holder = as<Specifier>(container);
        if (!isLocal(container)) {
            const Value element = specifier(machine, Specifier::Form::Element, container, elementClass, index);
            return how == Evaluate::Fully ? getFromApplication(machine, element) : element;
        }
        if (holder && isMany(holder->form))
            return resolve(machine, as<Specifier>(specifier(machine, Specifier::Form::Element, container, elementClass, index)), 0);
        if (holder) {
            container = follow(machine, container);
            if (container.isFailure())
                return container;
            return getElement(machine, container, elementClass, index, how);
        }
    }
    if (how == Evaluate::Never || !elementClass.isCode())
        return specifier(machine, Specifier::Form::Element, container, elementClass, index);

    const FourCharCode code = elementClass.asCode();
    if (is<Script>(container) || is<Application>(container)) {
        if (isNamedClass(code, index))
            return frameworkClass(machine, index);
        if (const Text* name = as<Text>(index); name && code == "scpt"_4cc && machine.host().library) {
            const Value library = machine.host().library(machine, name->view());
            if (!library.isUndefined())
                return library;
        }
        bool isOne;
        const Value made = madeFromText(machine, code, index, isOne);
        return isOne ? made : cannotGet(machine, specifier(machine, Specifier::Form::Element, container, elementClass, index));
    }
    if (const Date* date = as<Date>(container); date && code == "ldt "_4cc)
        return timeOnDay(machine, date, index);
    std::int64_t place;
    if (!wholeOf(machine, index, place))
        return Value::failure();
    if (const List* list = as<List>(container)) {
        if (const std::uint32_t at = placeInList(list, code, place); at != kNowhere)
            return list->items[at];
    } else if (const Text* text = as<Text>(container); text && isTextElement(code)) {
        Span span;
        if (elementAt(machine, text, code, place, span))
            return slice(machine, text, span);
    }
    return cannotGet(machine, specifier(machine, Specifier::Form::Element, container, elementClass, index));
}

Value makeSpecifier(Machine& machine, Specifier::Form form, const Value* operands) {
    switch (form) {
    case Specifier::Form::Test: // a test has a left side, an operator and a right side
        return specifier(machine, form, operands[0], operands[1], operands[2]);
    case Specifier::Form::Beginning:
    case Specifier::Form::End:
        return specifier(machine, form, operands[0]);
    case Specifier::Form::Range:
    case Specifier::Form::ElementByKey:
        return specifier(machine, form, operands[0], operands[1], operands[2], operands[3]);
    case Specifier::Form::Element:
        return specifier(machine, form, operands[0], operands[1], operands[2]);
    default:
        return specifier(machine, form, operands[0], operands[1]);
    }
}

/// Makes a reference value. A reference to a variable arrives as a property of a script; a local variable arrives as its value, to which
/// there is no reference.
Value makeReference(Machine& machine, Value value) {
    if (const Specifier* raw = as<Specifier>(value)) {
        Specifier* reference = machine.heap().make<Specifier>(*raw);
        reference->marked = false;
        reference->flags |= Specifier::kIsReference;
        return Value::object(reference);
    }
    return is<Script>(value) || is<Application>(value) ? value : cannotMake(machine, value, "obj "_4cc);
}

bool setElement(Machine& machine, Value container, Value elementClass, Value index, Value value) {
    const Value what = specifier(machine, Specifier::Form::Element, container, elementClass, index);
    if (!isLocal(container))
        return setInApplication(machine, what, value);
    container = follow(machine, container);
    if (container.isFailure())
        return false;
    std::int64_t place;
    if (!wholeOf(machine, index, place))
        return false;
    if (List* list = as<List>(container)) {
        const std::uint32_t at = elementClass == Value::code("cobj"_4cc) ? placeInList(list, "cobj"_4cc, place) : kNowhere;
        if (at != kNowhere) {
            machine.heap().detach(list);
            list->items[at] = value;
            return true;
        }
    }
    machine.raise(-10006, u"Can’t set " + inMessage(machine, what) + u" to " + inMessage(machine, value) + u".", what);
    return false;
}

bool setEnd(Machine& machine, Value container, Value value) {
    if (!isLocal(container))
        return setInApplication(machine, specifier(machine, Specifier::Form::End, container), value);
    container = follow(machine, container);
    if (container.isFailure())
        return false;
    if (List* list = as<List>(container))
        return machine.heap().append(list, value) || !tooLarge(machine).isFailure();
    const Value what = specifier(machine, Specifier::Form::End, container);
    machine.raise(-10006, u"Can’t set " + inMessage(machine, what) + u" to " + inMessage(machine, value) + u".", what);
    return false;
}

bool setSpecifier(Machine& machine, Value target, Value value) {
    if (const List* targets = as<List>(target); targets && std::any_of(targets->items, targets->items + targets->count, is<Specifier>))
        return setEach(machine, targets, value);
    const Specifier* what = as<Specifier>(target);
    if (!what) {
        machine.raise(OSAIllegalAssign,
                      u"Can’t set " + inMessage(machine, target) + u" to " + inMessage(machine, value) + u". Access not allowed.", target);
        return false;
    }
    if (!isLocal(target))
        return setInApplication(machine, target, value);
    switch (what->form) {
    case Specifier::Form::Property:
        return setProperty(machine, what->container, what->a, value);
    case Specifier::Form::Element:
        return setElement(machine, what->container, what->a, what->b, value);
    case Specifier::Form::End:
        return setEnd(machine, what->container, value);
    case Specifier::Form::Beginning: {
        const Value container = follow(machine, what->container);
        if (container.isFailure())
            return false;
        if (List* list = as<List>(container))
            return machine.heap().prepend(list, value) || !tooLarge(machine).isFailure();
        break;
    }
    default:
        break;
    }
    machine.raise(-10006, u"Can’t set " + inMessage(machine, target) + u" to " + inMessage(machine, value) + u".", target);
    return false;
}

Value count(Machine& machine, Value value) {
    if (is<Specifier>(value) && !isLocal(value)) { // the application counts its objects; where it cannot, it is asked for them
        const Heap::Hold hold(machine.heap());
        const Value counted = performCommand(machine, Value::object(machine.heap().eventName("corecnte")), value, {}, false);
        if (!counted.isFailure() || machine.error().number != errAEEventNotHandled)
            return counted;
        machine.error() = ScriptError();
    }
    value = follow(machine, value);
    if (value.isFailure())
        return value;
    if (const List* list = as<List>(value))
        return Value::integer(static_cast<std::int32_t>(list->count));
    if (const Text* text = as<Text>(value))
        return Value::integer(static_cast<std::int32_t>(characterCount(machine, text)));
    if (const Record* record = as<Record>(value))
        return Value::integer(static_cast<std::int32_t>(record->entries.size()));
    if (is<Application>(value) || is<Specifier>(value))
        return performCommand(machine, Value::object(machine.heap().eventName("corecnte")), value, {}, false);
    return machine.raise(errAEEventNotHandled, inMessage(machine, value) + u" doesn’t understand the “count” message.", value);
}

} // namespace quoddle::language

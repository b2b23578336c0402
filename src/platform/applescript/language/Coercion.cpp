// SPDX-License-Identifier: MIT
#include "platform/applescript/language/Coercion.h"

#include "platform/applescript/language/Commands.h"
#include "platform/applescript/language/Dates.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/language/Files.h"
#include "platform/applescript/language/References.h"
#include "platform/applescript/syntax/SourceText.h"
#include "platform/base/DateText.h"
#include "platform/base/RealText.h"
#include "platform/base/Text.h"

#include <charconv>
#include <unordered_map>

namespace quoddle::language {

using namespace machine;
namespace sourcetext = syntax::sourcetext;

namespace {

constexpr std::size_t kMaximumDepth = 200;

bool isTextClass(FourCharCode wanted) {
    return wanted == "utf8"_4cc || wanted == "ut16"_4cc || wanted == "ctxt"_4cc || wanted == "TEXT"_4cc || wanted == "utxt"_4cc ||
           wanted == "itxt"_4cc || wanted == "STXT"_4cc || wanted == "sutx"_4cc;
}

/// Parses a number as people write it: sign, digits with a point, exponent; blanks around it.
bool parseNumber(std::u16string_view text, double& number) {
    while (!text.empty() && (text.front() == u' ' || text.front() == u'\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == u' ' || text.back() == u'\t'))
        text.remove_suffix(1);
    if (!text.empty() && text.front() == u'+')
        text.remove_prefix(1);
    if (text.empty() || text.size() > 400)
        return false;
    std::string ascii;
    for (char16_t c : text) {
        if (!((c >= u'0' && c <= u'9') || c == u'.' || c == u'-' || c == u'+' || c == u'e' || c == u'E'))
            return false;
        ascii += static_cast<char>(c);
    }
    auto [end, error] = std::from_chars(ascii.data(), ascii.data() + ascii.size(), number);
    return error == std::errc() && end == ascii.data() + ascii.size();
}

Value toInteger(Value value) {
    if (value.isInteger())
        return value;
    if (value.isBoolean())
        return Value::integer(value.isTrue());
    if (!value.isReal())
        return Value::failure();
    const double rounded = std::nearbyint(value.asReal()); // halves are rounded to even
    if (rounded >= kMinimumInteger && rounded <= kMaximumInteger)
        return Value::integer(static_cast<std::int32_t>(rounded));
    // To scripts whole numbers of 32 bits are integers, though those beyond the range of integers are stored as reals.
    return rounded >= INT32_MIN && rounded <= INT32_MAX ? Value::real(rounded) : Value::failure();
}

Value toNumber(Value value) {
    if (value.isNumber())
        return value;
    if (value.isCode() || value.isConstant())
        if (const std::int32_t number = numberOfDateConstant(value.asCode()))
            return Value::integer(number);
    if (const auto amount = amountOf(value))
        return Value::real(*amount);
    if (const Text* text = as<Text>(value)) {
        double number;
        if (!parseNumber(text->view(), number))
            return Value::failure();
        const bool whole = text->view().find_first_of(u".eE") == std::u16string_view::npos;
        return whole && number >= kMinimumInteger && number <= kMaximumInteger ? Value::integer(static_cast<std::int32_t>(number))
                                                                               : Value::real(number);
    }
    return Value::failure();
}

/// Makes the text of one value.
class TextMaker {
public:
    explicit TextMaker(Machine& machine) : mMachine(machine) {}

    /// Appends the text of a value. False when a part of it has no text, or the text would be too long.
    bool append(Value value, std::size_t depth = 0);
    const std::u16string& text() const { return mText; }

private:
    bool appendList(const List* list, std::size_t depth);
    bool appendItems(const List* list, std::size_t depth);
    bool appendRaw(const Data& data);

    static constexpr std::size_t kListsNotNoted = 10000;
    struct Stretch {
        std::size_t start, length;
    };

    Machine& mMachine;
    std::u16string mText;
    std::size_t mLists = 0;
    std::unordered_map<const List*, Stretch> mKnown; // where in mText the text of a list stands
};

bool TextMaker::append(Value value, std::size_t depth) {
    if (depth > kMaximumDepth || mText.size() > Heap::kMaximumTextLength)
        return false;
    if (const Text* text = as<Text>(value))
        mText += text->view();
    else if (value.isInteger())
        mText += sourcetext::integer(value.asInteger());
    else if (value.isReal())
        mText += textOfReal(value.asReal());
    else if (value.isBoolean())
        mText += value.isTrue() ? u"true" : u"false";
    else if (value.isCode() || value.isConstant())
        mText += termFor(value);
    else if (const Date* date = as<Date>(value))
        mText += textOfDate(date->seconds);
    else if (const Application* application = as<Application>(value))
        mText += application->name.empty() ? u"current application" : application->name;
    else if (const Data* data = as<Data>(value); data && isFile(value))
        mText += hfsPath(*data);
    else if (const Data* raw = as<Data>(value); raw && appendRaw(*raw))
        return true;
    else if (const auto amount = amountOf(value))
        mText += textOfReal(*amount);
    else if (const List* list = as<List>(value))
        return appendList(list, depth);
    else
        return false;
    return true;
}

/// Appends a Data value that is text in one of the encodings of descriptors, such as «data utxt…».
bool TextMaker::appendRaw(const Data& data) {
    switch (data.dataType) {
    case "utxt"_4cc:
    case "ut16"_4cc:
        for (std::size_t i = 0; i + 1 < data.bytes.size(); i += 2)
            mText += static_cast<char16_t>(static_cast<unsigned char>(data.bytes[i]) << 8 | static_cast<unsigned char>(data.bytes[i + 1]));
        return true;
    case "utf8"_4cc:
    case "isot"_4cc:
        mText += utf16FromUTF8(data.bytes);
        return true;
    case "TEXT"_4cc:
        mText += utf16FromMacRoman(data.bytes);
        return true;
    default:
        return false;
    }
}

/// Appends a list. A list that is met again gets a copy of the text it had: otherwise lists that hold a list many times would take for
/// ever.
bool TextMaker::appendList(const List* list, std::size_t depth) {
    if (++mLists <= kListsNotNoted)
        return appendItems(list, depth);
    if (const auto known = mKnown.find(list); known != mKnown.end()) {
        mText.append(mText, known->second.start, known->second.length);
        return true;
    }
    const std::size_t start = mText.size();
    if (!appendItems(list, depth))
        return false;
    mKnown[list] = {start, mText.size() - start};
    return true;
}

bool TextMaker::appendItems(const List* list, std::size_t depth) {
    const std::u16string delimiter = textItemDelimiters(mMachine).front();
    for (std::uint32_t i = 0; i < list->count; ++i) {
        if (i > 0)
            mText += delimiter;
        const Value item = follow(mMachine, list->items[i]);
        if (item.isFailure() || !append(item, depth + 1))
            return false;
    }
    return true;
}

Value toText(Machine& machine, Value value) {
    if (is<Text>(value))
        return value;
    TextMaker maker(machine);
    if (!maker.append(value) || maker.text().size() > Heap::kMaximumTextLength)
        return Value::failure();
    return Value::object(machine.heap().text(maker.text()));
}

Value toList(Machine& machine, Value value) {
    if (const List* list = as<List>(value); list && !(list->flags & List::kLinked))
        return value;
    List* list = machine.heap().list(1);
    if (const Record* record = as<Record>(value)) {
        for (const Record::Entry& entry : record->entries)
            if (!machine.heap().append(list, entry.value))
                return Value::failure();
    } else if (const List* linked = as<List>(value)) {
        for (std::uint32_t i = 0; i < linked->count; ++i)
            if (!machine.heap().append(list, linked->items[i]))
                return Value::failure();
    } else if (!machine.heap().append(list, value)) {
        return Value::failure();
    }
    return Value::object(list);
}

/// A list of `count` whole numbers: a point, a rectangle or a colour.
Value wholeNumbers(Machine& machine, Value value, std::size_t count) {
    const List* given = as<List>(value);
    if (!given || given->count != count)
        return Value::failure();
    List* numbers = machine.heap().list(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        const Value number = toNumber(follow(machine, given->items[i]));
        const Value whole = number.isFailure() ? number : toInteger(number);
        if (whole.isFailure())
            return whole;
        numbers->items[numbers->count++] = whole;
    }
    return Value::object(numbers);
}

/// The item of a list of one, which is coerced in the list's place; failure for any other value.
Value onlyItem(Value value) {
    const List* list = as<List>(value);
    return list && list->count == 1 ? list->items[0] : Value::failure();
}

Value convert(Machine& machine, Value value, FourCharCode wanted, std::size_t depth);

Value convertItem(Machine& machine, Value value, FourCharCode wanted, std::size_t depth) {
    const Value item = onlyItem(value);
    return item.isFailure() || depth > kMaximumDepth ? Value::failure() : convert(machine, item, wanted, depth + 1);
}

Value convert(Machine& machine, Value value, FourCharCode wanted, std::size_t depth) {
    if (isTextClass(wanted))
        return toText(machine, value);
    Value result = Value::failure();
    switch (wanted) {
    case "****"_4cc:
    case "cobj"_4cc:
        return value;
    case "long"_4cc:
    case "shor"_4cc:
    case "comp"_4cc: {
        const Value number = toNumber(value);
        result = toInteger(number.isFailure() ? value : number);
        break;
    }
    case "doub"_4cc:
    case "sing"_4cc: {
        const Value number = value.isBoolean() ? Value::integer(value.isTrue()) : toNumber(value);
        if (!number.isFailure())
            result = Value::real(number.asNumber());
        break;
    }
    case "nmbr"_4cc:
        result = toNumber(value);
        break;
    case "bool"_4cc:
        if (value.isBoolean())
            return value;
        if (value.asCode() == "yes "_4cc || value.asCode() == "no  "_4cc)
            return Value::boolean(value.asCode() == "yes "_4cc);
        if (value.isInteger() && (value.asInteger() == 0 || value.asInteger() == 1))
            return Value::boolean(value.asInteger() == 1);
        if (const Text* text = as<Text>(value)) {
            if (text->view() == u"true" || text->view() == u"false")
                return Value::boolean(text->view() == u"true");
        }
        break;
    case "list"_4cc:
    case "vect"_4cc:
        return toList(machine, value);
    case "llst"_4cc: {
        const Value list = deepCopy(machine, toList(machine, value));
        if (!list.isFailure())
            list.asObject()->flags |= List::kLinked;
        return list;
    }
    case "reco"_4cc:
        if (is<Record>(value))
            return value;
        break;
    case "ldt "_4cc:
        if (is<Date>(value))
            return value;
        if (const Data* data = as<Data>(value); data && data->dataType == "isot"_4cc)
            value = toText(machine, value);
        if (const Text* text = as<Text>(value)) {
            if (auto seconds = dateOfText(text->view(), currentSeconds()))
                return Value::object(machine.heap().make<Date>(*seconds));
        }
        break;
    case "isot"_4cc:
        if (const Date* date = as<Date>(value))
            return Value::object(machine.heap().make<Data>("isot"_4cc, isoTextOfDate(*date)));
        return is<Data>(value) && classOf(value) == Value::code("isot"_4cc) ? value : convertItem(machine, value, wanted, depth);
    case "scpt"_4cc:
        if (is<Script>(value))
            return value;
        break;
    case "alis"_4cc:
    case "furl"_4cc:
    case "file"_4cc:
    case "psxf"_4cc:
        result = makeFile(machine, value, wanted);
        break;
    case "type"_4cc:
    case "pcls"_4cc:
        if (value.isCode())
            return value;
        break;
    case "enum"_4cc:
    case "cons"_4cc:
        if (value.isConstant() || value.isBoolean())
            return value;
        break;
    case "QDpt"_4cc:
        return wholeNumbers(machine, value, 2);
    case "cRGB"_4cc:
        return wholeNumbers(machine, value, 3);
    case "qdrt"_4cc:
        return wholeNumbers(machine, value, 4);
    case "hand"_4cc:
        if (is<Handler>(value))
            return value;
        break;
    case "capp"_4cc:
        if (is<Application>(value))
            return value;
        break;
    default:
        if (classOf(value) == Value::code(wanted))
            return value;
        if (const Data* data = as<Data>(value); data && data->dataType == wanted)
            return value;
        const Value number = is<Text>(value) ? toNumber(value) : value;
        if (!number.isFailure())
            result = makeMeasure(machine, number, wanted);
    }
    return result.isFailure() ? convertItem(machine, value, wanted, depth) : result;
}

} // namespace

Value classOf(Value value) {
    if (value.isInteger())
        return Value::code("long"_4cc);
    if (value.isReal())
        return Value::code("doub"_4cc);
    if (value.isBoolean())
        return Value::code("bool"_4cc);
    if (value.isConstant())
        return Value::code("enum"_4cc);
    if (value.isCode())
        return Value::code("pcls"_4cc);
    if (!value.isObject())
        return Value::code("undf"_4cc);
    switch (value.asObject()->type) {
    case HeapType::Text:
        return Value::code("ctxt"_4cc);
    case HeapType::List:
        return Value::code(value.asObject()->flags & List::kLinked ? "llst"_4cc : "list"_4cc);
    case HeapType::Record: {
        const Record::Entry* entry = static_cast<Record*>(value.asObject())->find(Value::code("pcls"_4cc));
        return entry ? entry->value : Value::code("reco"_4cc);
    }
    case HeapType::Date:
        return Value::code("ldt "_4cc);
    case HeapType::Data: {
        const FourCharCode type = static_cast<Data*>(value.asObject())->dataType;
        return Value::code(type == "furl"_4cc ? "furl"_4cc : type);
    }
    case HeapType::Application:
        return Value::code("capp"_4cc);
    case HeapType::Script:
        return Value::code("scpt"_4cc);
    case HeapType::Handler:
        return Value::code("hand"_4cc);
    case HeapType::Specifier:
        return Value::code("obj "_4cc);
    case HeapType::EventName:
        return Value::code("evnt"_4cc);
    default:
        return Value::code("undf"_4cc);
    }
}

bool isOfClass(Value value, FourCharCode wanted) {
    if (wanted == "cobj"_4cc || wanted == "****"_4cc)
        return true;
    if (wanted == "nmbr"_4cc)
        return value.isNumber();
    if (isTextClass(wanted))
        return is<Text>(value);
    if (wanted == "list"_4cc)
        return is<List>(value);
    return classOf(value) == Value::code(wanted);
}

bool wholeOf(Machine& machine, Value value, std::int64_t& whole) {
    const Value number = coerce(machine, value, Value::code("long"_4cc));
    if (!number.isFailure())
        whole = static_cast<std::int64_t>(number.asNumber());
    return !number.isFailure();
}

Text* textOf(Machine& machine, Value value) {
    const Value text = toText(machine, value);
    return text.isFailure() ? nullptr : as<Text>(text);
}

Value tryCoerce(Machine& machine, Value value, FourCharCode wanted) {
    return convert(machine, value, wanted, 0);
}

Value cannotMake(Machine& machine, Value value, FourCharCode wanted) {
    return machine.raise(errAECoercionFail,
                         u"Can’t make " + inMessage(machine, value) + u" into type " + termFor(Value::code(wanted)) + u".", value,
                         Value::code(wanted));
}

Value tooLarge(Machine& machine) {
    return machine.raise(errOSADataBlockTooLarge, u"Attempt to create a value larger than the allowable size.");
}

Value coerce(Machine& machine, Value value, Value wanted) {
    if (const List* classes = as<List>(wanted)) {
        value = follow(machine, value);
        if (value.isFailure())
            return value;
        for (std::uint32_t i = 0; i < classes->count; ++i)
            if (classes->items[i].isCode() && isOfClass(value, classes->items[i].asCode()))
                return value;
        for (std::uint32_t i = 0; i < classes->count; ++i)
            if (classes->items[i].isCode())
                if (const Value made = tryCoerce(machine, value, classes->items[i].asCode()); !made.isFailure())
                    return made;
        return machine.raise(errAECoercionFail, u"Can’t make " + inMessage(machine, value) + u" into the expected type.", value);
    }
    if (!wanted.isCode())
        return machine.raise(errAECoercionFail, u"Can’t make " + inMessage(machine, value) + u" into the expected type.", value);
    if (value.isUndefined())
        return machine.raise(-2763, u"No result was returned from some part of this expression.");
    const bool keepsReference = wanted.asCode() == "obj "_4cc;
    if (is<Specifier>(value) && !keepsReference) {
        if (!isLocal(value))
            value = getFromApplication(machine, value, wanted);
        if (is<Specifier>(value) && isLocal(value)) // also what an application has answered
            value = follow(machine, value);
        if (value.isFailure())
            return value;
    }
    if (value.isUndefined())
        return machine.raise(-2763, u"No result was returned from some part of this expression.");
    const Value made = tryCoerce(machine, value, wanted.asCode());
    if (made.isFailure() && wanted.asCode() == "alis"_4cc && isFile(value))
        return machine.raise(fnfErr, u"File " + inMessage(machine, value) + u" wasn’t found.", value);
    return made.isFailure() ? cannotMake(machine, value, wanted.asCode()) : made;
}

} // namespace quoddle::language

// SPDX-License-Identifier: MIT
// Descriptors of the values of a machine.
#include "platform/ae/AEObjects.h"
#include "platform/applescript/component/Descriptors.h"
#include "platform/applescript/language/References.h"

namespace quoddle::component {

using namespace machine;

namespace {

class ToDescriptor {
public:
    explicit ToDescriptor(Machine& machine) : mMachine(machine) {}

    std::optional<AEDesc> value(Value value);
    std::optional<AEDesc> specifier(const Specifier* specifier);

private:
    std::optional<AEDesc> object(Value value);
    std::optional<AEDesc> list(const List* list);
    std::optional<AEDesc> record(const Record* record);
    std::optional<AEDesc> container(Value value);
    std::optional<AEDesc> test(const Specifier* test);
    std::optional<AEDesc> condition(Value value);
    std::optional<AEDesc> filter(const Specifier* filter);
    std::optional<AEDesc> range(const Specifier* range);
    std::optional<AEDesc> rangeBoundary(Value bound, Value elementClass);
    std::optional<AEDesc> specifierIn(const Specifier* specifier, std::optional<AEDesc> container);

    Machine& mMachine;
    Value mRangeContainer; // stands for itself as "ccnt" in the boundaries of the range that is being described
    std::size_t mDepth = 0;
};

std::optional<AEDesc> objectSpecifier(DescType wanted, std::optional<AEDesc> from, DescType form, std::optional<AEDesc> data) {
    if (!from || !data)
        return std::nullopt;
    return AEDesc::record({{"want"_4cc, AEDesc::ofType(wanted)},
                           {"form"_4cc, AEDesc::ofEnum(form)},
                           {"seld"_4cc, std::move(*data)},
                           {"from"_4cc, std::move(*from)}},
                          "obj "_4cc);
}

AEDesc comparison(AEDesc left, DescType relation, AEDesc right) {
    return AEDesc::record({{"obj1"_4cc, std::move(left)}, {"relo"_4cc, AEDesc::ofEnum(relation)}, {"obj2"_4cc, std::move(right)}},
                          "cmpd"_4cc);
}

std::optional<AEDesc> insertionPoint(std::optional<AEDesc> object, DescType position) {
    if (!object)
        return std::nullopt;
    return AEDesc::record({{"kobj"_4cc, std::move(*object)}, {"kpos"_4cc, AEDesc::ofEnum(position)}}, "insl"_4cc);
}

/// The class of the things that a specifier names; "item" where it names none.
DescType classNamedBy(const Specifier* specifier) {
    while (specifier && specifier->form == Specifier::Form::Filter)
        specifier = as<Specifier>(specifier->container);
    return specifier && specifier->form != Specifier::Form::Property && specifier->a.isCode() ? specifier->a.asCode() : "cobj"_4cc;
}

std::optional<AEDesc> ToDescriptor::value(Value value) {
    if (value.isUndefined())
        return AEDesc();
    if (value.isInteger())
        return AEDesc::ofInt32(value.asInteger());
    if (value.isReal())
        return AEDesc::ofDouble(value.asReal());
    if (value.isBoolean())
        return AEDesc::ofBoolean(value.isTrue());
    if (value.isCode())
        return AEDesc::ofType(value.asCode());
    if (value.isConstant())
        return AEDesc::ofEnum(value.asCode());
    if (!value.isObject() || mDepth >= kMaximumDescriptorDepth)
        return std::nullopt;
    ++mDepth;
    auto descriptor = object(value);
    --mDepth;
    return descriptor;
}

std::optional<AEDesc> ToDescriptor::object(Value value) {
    switch (value.asObject()->type) {
    case HeapType::Text:
        return AEDesc::ofText(as<Text>(value)->view());
    case HeapType::List:
        return list(as<List>(value));
    case HeapType::Record:
        return record(as<Record>(value));
    case HeapType::Date:
        return AEDesc::ofDate(as<Date>(value)->seconds);
    case HeapType::Data:
        return AEDesc(as<Data>(value)->dataType, as<Data>(value)->bytes);
    case HeapType::Application:
        return addressOf(*as<Application>(value));
    case HeapType::EventName:
        return descriptorOfEventName(as<EventName>(value)->bytes);
    case HeapType::Specifier:
        if (language::isLocal(value)) {
            const Value followed = language::follow(mMachine, value);
            return followed.isFailure() ? std::nullopt : this->value(followed);
        }
        return specifier(as<Specifier>(value));
    case HeapType::Script: {
        OSStatus status = noErr;
        auto bytes = imageFromScript(mMachine, value, false, status);
        return bytes ? std::optional(AEDesc("scpt"_4cc, *bytes)) : std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

std::optional<AEDesc> ToDescriptor::list(const List* list) {
    std::vector<AEDesc> items;
    items.reserve(list->count);
    for (std::uint32_t i = 0; i < list->count; ++i) {
        auto item = value(list->items[i]);
        if (!item)
            return std::nullopt;
        items.push_back(std::move(*item));
    }
    return AEDesc::list(std::move(items));
}

DescType typeOfRecord(const Record* record) {
    for (const Record::Entry& entry : record->entries)
        if (entry.key == Value::code("pcls"_4cc) && entry.value.isCode())
            return entry.value.asCode();
    return "reco"_4cc;
}

/// Fields with names of the script's own go into one list under "usrf". A field "class" gives the descriptor its type.
std::optional<AEDesc> ToDescriptor::record(const Record* record) {
    std::vector<AEItem> fields;
    std::vector<AEDesc> userFields;
    for (const Record::Entry& entry : record->entries) {
        if (entry.key == Value::code("pcls"_4cc) && entry.value.isCode())
            continue;
        auto field = value(entry.value);
        if (!field)
            return std::nullopt;
        if (const Symbol* symbol = as<Symbol>(entry.key)) {
            userFields.push_back(AEDesc::ofUTF8(symbol->spelling));
            userFields.push_back(std::move(*field));
        } else {
            fields.push_back({entry.key.asCode(), std::move(*field)}); // keys are unique in a record, so there is no need to look
        }
    }
    AEDesc descriptor = AEDesc::record(std::move(fields), typeOfRecord(record));
    if (!userFields.empty())
        (void)descriptor.put("usrf"_4cc, AEDesc::list(std::move(userFields)));
    return descriptor;
}

/// An application as a container is the null descriptor, because the event's address tells the application.
std::optional<AEDesc> ToDescriptor::container(Value value) {
    if (!mRangeContainer.isUndefined() && value == mRangeContainer)
        return AEDesc("ccnt"_4cc, {});
    if (is<Application>(value) || value.isUndefined() || is<Script>(value))
        return AEDesc();
    const Specifier* holder = as<Specifier>(value);
    return holder && !language::isLocal(value) ? specifier(holder) : this->value(value);
}

std::optional<AEDesc> ToDescriptor::range(const Specifier* range) {
    const Value outer = std::exchange(mRangeContainer, range->container);
    auto from = rangeBoundary(range->b, range->a), to = rangeBoundary(range->c, range->a);
    mRangeContainer = outer;
    if (!from || !to)
        return std::nullopt;
    return AEDesc::record({{"star"_4cc, std::move(*from)}, {"stop"_4cc, std::move(*to)}}, "rang"_4cc);
}

std::optional<AEDesc> ToDescriptor::rangeBoundary(Value bound, Value elementClass) {
    if (is<Specifier>(bound))
        return value(bound);
    return objectSpecifier(elementClass.asCode(), AEDesc("ccnt"_4cc, {}), is<Text>(bound) ? "name"_4cc : "indx"_4cc, value(bound));
}

/// A condition that compares nothing, such as `visible` in "every window whose visible", holds where the value is true.
std::optional<AEDesc> ToDescriptor::condition(Value value) {
    auto described = this->value(value);
    const Specifier* test = as<Specifier>(value);
    if (!described || (test && test->form == Specifier::Form::Test))
        return described;
    return comparison(std::move(*described), "=   "_4cc, AEDesc::ofBoolean(true));
}

std::optional<AEDesc> ToDescriptor::test(const Specifier* test) {
    const auto opcode = static_cast<Opcode>(test->a.asInteger());
    const auto logical = [](DescType operation, std::vector<AEDesc> terms) {
        return AEDesc::record({{"logc"_4cc, AEDesc::ofEnum(operation)}, {"term"_4cc, AEDesc::list(std::move(terms))}}, "logi"_4cc);
    };
    const bool isLogical = opcode == Opcode::TestNot || opcode == Opcode::TestAnd || opcode == Opcode::TestOr;
    auto left = isLogical ? condition(test->container) : value(test->container);
    if (!left)
        return std::nullopt;
    if (opcode == Opcode::TestNot)
        return logical("NOT "_4cc, {*left});
    auto right = isLogical ? condition(test->b) : value(test->b);
    if (!right)
        return std::nullopt;
    if (isLogical)
        return logical(opcode == Opcode::TestAnd ? "AND "_4cc : "OR  "_4cc, {*left, *right});
    if (opcode == Opcode::TestNotEqual)
        return logical("NOT "_4cc, {comparison(*left, "=   "_4cc, *right)});
    for (const TestRelation& row : kTestRelations)
        if (row.opcode == opcode)
            return comparison(*left, row.relation, *right);
    return std::nullopt;
}

/// "first file of home whose …" is the first of those files of home for which the test holds: the test stands innermost, in place of the
/// collection that it chooses from, and the choice stands around it. In "name of every file whose …" the test is one of the files.
std::optional<AEDesc> ToDescriptor::filter(const Specifier* filter) {
    auto tested = condition(filter->a);
    std::vector<const Specifier*> properties;
    const Specifier* objects = as<Specifier>(filter->container);
    for (; objects && objects->form == Specifier::Form::Property && is<Specifier>(objects->container);
         objects = as<Specifier>(objects->container))
        properties.push_back(objects);
    if (!objects || objects->form == Specifier::Form::Property) // the value of a property is a collection, too
        return objectSpecifier(classNamedBy(objects), container(filter->container), "test"_4cc, std::move(tested));
    const DescType wanted = classNamedBy(objects);
    const bool isFiltered = objects->form == Specifier::Form::Filter;
    auto chosen =
        objectSpecifier(wanted, container(isFiltered ? Value::object(objects) : objects->container), "test"_4cc, std::move(tested));
    if (!isFiltered && objects->form != Specifier::Form::Every)
        chosen = specifierIn(objects, std::move(chosen));
    for (auto property = properties.rbegin(); property != properties.rend(); ++property)
        chosen = specifierIn(*property, std::move(chosen));
    return chosen;
}

std::optional<AEDesc> ToDescriptor::specifier(const Specifier* what) {
    if (mDepth >= kMaximumDescriptorDepth)
        return std::nullopt;
    switch (what->form) {
    case Specifier::Form::Filter:
        return filter(what);
    case Specifier::Form::Examined:
        return AEDesc("exmn"_4cc, {});
    case Specifier::Form::Test:
        return test(what);
    default:
        return specifierIn(what, container(what->container));
    }
}

/// A specifier of any form but a filter or a test, with the container that is given.
std::optional<AEDesc> ToDescriptor::specifierIn(const Specifier* what, std::optional<AEDesc> from) {
    const DescType code = what->a.isCode() ? what->a.asCode() : 0;
    const bool isPlace = code == "insl"_4cc;
    switch (what->form) {
    case Specifier::Form::Property:
        if (const Symbol* name = as<Symbol>(what->a))
            return objectSpecifier("prop"_4cc, std::move(from), "usrp"_4cc, AEDesc::ofUTF8(name->spelling));
        return objectSpecifier("prop"_4cc, std::move(from), "prop"_4cc, AEDesc::ofType(code));
    case Specifier::Form::Every:
        return objectSpecifier(code, std::move(from), "indx"_4cc, CreateAbsoluteOrdinal("all "_4cc));
    case Specifier::Form::Some:
        return objectSpecifier(code, std::move(from), "indx"_4cc, CreateAbsoluteOrdinal("any "_4cc));
    case Specifier::Form::Middle:
        return objectSpecifier(code, std::move(from), "indx"_4cc, CreateAbsoluteOrdinal("midd"_4cc));
    case Specifier::Form::Element:
        return objectSpecifier(code, std::move(from), is<Text>(what->b) ? "name"_4cc : "indx"_4cc, value(what->b));
    case Specifier::Form::ElementByKey:
        return objectSpecifier(code, std::move(from), what->c.asCode(), value(what->b));
    case Specifier::Form::Range:
        return objectSpecifier(code, std::move(from), "rang"_4cc, range(what));
    case Specifier::Form::Before:
        return isPlace ? insertionPoint(std::move(from), "befo"_4cc)
                       : objectSpecifier(code, std::move(from), "rele"_4cc, AEDesc::ofEnum("prev"_4cc));
    case Specifier::Form::After:
        return isPlace ? insertionPoint(std::move(from), "afte"_4cc)
                       : objectSpecifier(code, std::move(from), "rele"_4cc, AEDesc::ofEnum("next"_4cc));
    case Specifier::Form::Beginning:
        return insertionPoint(std::move(from), "bgng"_4cc);
    case Specifier::Form::End:
        return insertionPoint(std::move(from), "end "_4cc);
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<AEDesc> descriptorFromValue(Machine& machine, Value value) {
    return ToDescriptor(machine).value(value);
}

std::optional<AEDesc> descriptorFromReference(Machine& machine, Value value) {
    const Specifier* specifier = as<Specifier>(value);
    return specifier ? ToDescriptor(machine).specifier(specifier) : descriptorFromValue(machine, value);
}

DescType descriptorTypeOf(Machine& machine, Value value) {
    if (is<Specifier>(value) && language::isLocal(value))
        value = language::follow(machine, value);
    if (is<Script>(value))
        return "scpt"_4cc;
    if (is<List>(value))
        return "list"_4cc;
    if (is<Record>(value))
        return "reco"_4cc;
    if (is<Text>(value))
        return "utxt"_4cc;
    auto descriptor = descriptorFromValue(machine, value);
    return descriptor ? descriptor->type() : "null"_4cc;
}

} // namespace quoddle::component

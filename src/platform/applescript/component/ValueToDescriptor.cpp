// SPDX-License-Identifier: MIT
// Descriptors of the values of a machine.
#include "platform/ae/AEObjects.h"
#include "platform/applescript/component/Descriptors.h"
#include "platform/applescript/image/Opcode.h"
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
    std::optional<AEDesc> rangeBoundary(Value bound, Value elementClass);
    std::optional<AEDesc> element(DescType wanted, Value container, DescType form, std::optional<AEDesc> data);

    Machine& mMachine;
    std::size_t mDepth = 0;
};

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
    if (is<Application>(value) || value.isUndefined() || is<Script>(value))
        return AEDesc();
    const Specifier* holder = as<Specifier>(value);
    return holder && !language::isLocal(value) ? specifier(holder) : this->value(value);
}

std::optional<AEDesc> ToDescriptor::element(DescType wanted, Value holder, DescType form, std::optional<AEDesc> data) {
    auto from = container(holder);
    if (!from || !data)
        return std::nullopt;
    return AEDesc::record({{"want"_4cc, AEDesc::ofType(wanted)},
                           {"form"_4cc, AEDesc::ofEnum(form)},
                           {"seld"_4cc, std::move(*data)},
                           {"from"_4cc, std::move(*from)}},
                          "obj "_4cc);
}

std::optional<AEDesc> ToDescriptor::rangeBoundary(Value bound, Value elementClass) {
    if (is<Specifier>(bound))
        return value(bound);
    auto key = value(bound);
    if (!key)
        return std::nullopt;
    const DescType form = is<Text>(bound) ? "name"_4cc : "indx"_4cc;
    return AEDesc::record({{"want"_4cc, AEDesc::ofType(elementClass.asCode())},
                           {"form"_4cc, AEDesc::ofEnum(form)},
                           {"seld"_4cc, std::move(*key)},
                           {"from"_4cc, AEDesc("ccnt"_4cc, {})}},
                          "obj "_4cc);
}

std::optional<AEDesc> ToDescriptor::test(const Specifier* test) {
    static constexpr struct {
        Opcode opcode;
        DescType relation;
    } kRelations[] = {
        {Opcode::TestEqual, "=   "_4cc},          {Opcode::TestNotEqual, "=   "_4cc}, {Opcode::TestGreater, ">   "_4cc},
        {Opcode::TestGreaterOrEqual, ">=  "_4cc}, {Opcode::TestLess, "<   "_4cc},     {Opcode::TestLessOrEqual, "<=  "_4cc},
        {Opcode::TestStartsWith, "bgwt"_4cc},     {Opcode::TestEndsWith, "ends"_4cc}, {Opcode::TestContains, "cont"_4cc},
    };
    const auto opcode = static_cast<Opcode>(test->a.asInteger());
    const auto logical = [](DescType operation, std::vector<AEDesc> terms) {
        return AEDesc::record({{"logc"_4cc, AEDesc::ofEnum(operation)}, {"term"_4cc, AEDesc::list(std::move(terms))}}, "logi"_4cc);
    };
    auto left = value(test->container);
    if (!left)
        return std::nullopt;
    if (opcode == Opcode::TestNot)
        return logical("NOT "_4cc, {*left});
    auto right = value(test->b);
    if (!right)
        return std::nullopt;
    if (opcode == Opcode::TestAnd || opcode == Opcode::TestOr)
        return logical(opcode == Opcode::TestAnd ? "AND "_4cc : "OR  "_4cc, {*left, *right});
    for (const auto& row : kRelations)
        if (row.opcode == opcode) {
            AEDesc comparison =
                AEDesc::record({{"obj1"_4cc, *left}, {"relo"_4cc, AEDesc::ofEnum(row.relation)}, {"obj2"_4cc, *right}}, "cmpd"_4cc);
            return opcode == Opcode::TestNotEqual ? logical("NOT "_4cc, {comparison}) : comparison;
        }
    return std::nullopt;
}

std::optional<AEDesc> ToDescriptor::specifier(const Specifier* what) {
    if (mDepth >= kMaximumDescriptorDepth)
        return std::nullopt;
    const DescType code = what->a.isCode() ? what->a.asCode() : 0;
    switch (what->form) {
    case Specifier::Form::Property:
        if (const Symbol* name = as<Symbol>(what->a))
            return element("prop"_4cc, what->container, "usrp"_4cc, AEDesc::ofUTF8(name->spelling));
        return element("prop"_4cc, what->container, "prop"_4cc, AEDesc::ofType(code));
    case Specifier::Form::Every:
        return element(code, what->container, "indx"_4cc, CreateAbsoluteOrdinal("all "_4cc));
    case Specifier::Form::Some:
        return element(code, what->container, "indx"_4cc, CreateAbsoluteOrdinal("any "_4cc));
    case Specifier::Form::Middle:
        return element(code, what->container, "indx"_4cc, CreateAbsoluteOrdinal("midd"_4cc));
    case Specifier::Form::Element:
        return element(code, what->container, is<Text>(what->b) ? "name"_4cc : "indx"_4cc, value(what->b));
    case Specifier::Form::ElementByKey:
        return element(code, what->container, what->c.asCode(), value(what->b));
    case Specifier::Form::Range: {
        auto from = rangeBoundary(what->b, what->a), to = rangeBoundary(what->c, what->a);
        if (!from || !to)
            return std::nullopt;
        return element(code, what->container, "rang"_4cc, AEDesc::record({{"star"_4cc, *from}, {"stop"_4cc, *to}}, "rang"_4cc));
    }
    case Specifier::Form::Filter: {
        const Specifier* objects = as<Specifier>(what->container);
        const Specifier* condition = as<Specifier>(what->a);
        if (!condition)
            return std::nullopt;
        auto description = test(condition);
        return element(objects && objects->a.isCode() ? objects->a.asCode() : "cobj"_4cc, what->container, "test"_4cc,
                       std::move(description));
    }
    case Specifier::Form::Before:
    case Specifier::Form::After: {
        const bool before = what->form == Specifier::Form::Before;
        if (code == "insl"_4cc) {
            auto object = container(what->container);
            if (!object)
                return std::nullopt;
            return AEDesc::record({{"kobj"_4cc, *object}, {"kpos"_4cc, AEDesc::ofEnum(before ? "befo"_4cc : "afte"_4cc)}}, "insl"_4cc);
        }
        return element(code, what->container, "rele"_4cc, AEDesc::ofEnum(before ? "prev"_4cc : "next"_4cc));
    }
    case Specifier::Form::Beginning:
    case Specifier::Form::End: {
        auto object = container(what->container);
        if (!object)
            return std::nullopt;
        const DescType place = what->form == Specifier::Form::Beginning ? "bgng"_4cc : "end "_4cc;
        return AEDesc::record({{"kobj"_4cc, *object}, {"kpos"_4cc, AEDesc::ofEnum(place)}}, "insl"_4cc);
    }
    case Specifier::Form::Examined:
        return AEDesc("exmn"_4cc, {});
    case Specifier::Form::Test:
        return test(what);
    }
    return std::nullopt;
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

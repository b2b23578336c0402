// SPDX-License-Identifier: MIT
// Values of descriptors, which may come from anybody and be hostile.
#include "platform/ae/AESendMessage.h"
#include "platform/applescript/component/Descriptors.h"
#include "platform/base/Text.h"

#include <unordered_map>

namespace quoddle::component {

using namespace machine;

namespace {

/// Fills a record, with an index of its keys: searching the record for each key would take time by the square of its size, which the sender
/// chooses.
class Fields {
public:
    explicit Fields(Record* record) : mRecord(record) {}

    void set(Value key, Value value) {
        if (Record::Entry* known = mRecord->entries.size() < kFew ? mRecord->find(key) : find(key))
            known->value = value;
        else
            mRecord->entries.push_back({key, value});
    }

private:
    Record::Entry* find(Value key) {
        for (std::size_t count = mRecord->entries.size(); mPlaces.size() < count;)
            mPlaces.emplace(mRecord->entries[mPlaces.size()].key.bits(), mPlaces.size());
        auto place = mPlaces.find(key.bits());
        return place == mPlaces.end() ? nullptr : &mRecord->entries[place->second];
    }

    static constexpr std::size_t kFew = 16;
    Record* mRecord;
    std::unordered_map<std::uint64_t, std::size_t> mPlaces; // places of entries by key, for as many of the entries as it has members
};

class FromDescriptor {
public:
    FromDescriptor(Machine& machine, Value owner) : mMachine(machine), mOwner(owner) {}

    Value value(const AEDesc& descriptor);

private:
    Value record(const AEDesc& descriptor);
    Value reference(const AEDesc& descriptor);
    Value specifier(const AEDesc& descriptor);
    Value range(const AEDesc& boundaries, Value container, Value elementClass);
    Value rangeBoundary(const AEDesc* boundary, Value elementClass);
    Value comparison(const AEDesc& descriptor);
    Value logical(const AEDesc& descriptor);
    Value insertionPoint(const AEDesc& descriptor);
    Value make(Specifier::Form form, Value container, Value a = {}, Value b = {}, Value c = {});
    Value test(Opcode operation, Value left, Value right = {});
    Value unknown(const AEDesc& descriptor);

    Machine& mMachine;
    const Value mOwner;    // the application whose objects the references name
    Value mRangeContainer; // what "ccnt" stands for
    std::size_t mDepth = 0;
};

bool isTextType(DescType type) {
    switch (type) {
    case "utxt"_4cc:
    case "utf8"_4cc:
    case "ut16"_4cc:
    case "TEXT"_4cc:
    case "STXT"_4cc:
    case "itxt"_4cc:
    case "sutx"_4cc:
    case "cstr"_4cc:
    case "pstr"_4cc:
        return true;
    default:
        return false;
    }
}

Value FromDescriptor::value(const AEDesc& descriptor) {
    const DescType type = descriptor.type();
    if (isTextType(type))
        return Value::object(mMachine.heap().text(descriptor.asText().value_or(std::u16string())));
    switch (type) {
    case "null"_4cc:
        return {};
    case "bool"_4cc:
    case "true"_4cc:
    case "fals"_4cc:
        return Value::boolean(descriptor.asBoolean().value_or(false));
    case "long"_4cc:
    case "shor"_4cc:
    case "comp"_4cc:
    case "ushr"_4cc:
    case "magn"_4cc:
    case "ucom"_4cc: {
        const auto whole = descriptor.asInt64();
        if (whole && fitsInteger(*whole))
            return Value::integer(static_cast<std::int32_t>(*whole));
        const auto real = descriptor.asDouble();
        return real ? Value::real(*real) : Value::integer(0);
    }
    case "doub"_4cc:
    case "sing"_4cc:
    case "ldbl"_4cc:
        return Value::real(descriptor.asDouble().value_or(0));
    case "type"_4cc:
    case "prop"_4cc:
        return descriptor.code() == "undf"_4cc ? Value() : Value::code(descriptor.code());
    case "enum"_4cc:
        return Value::constant(descriptor.code(), 0);
    case "ldt "_4cc: {
        std::int64_t seconds = 0;
        if (descriptor.data().size() == sizeof seconds)
            descriptor.data().copy(reinterpret_cast<char*>(&seconds), sizeof seconds);
        return Value::object(mMachine.heap().make<Date>(seconds));
    }
    case "evnt"_4cc:
        return Value::object(mMachine.heap().eventName(eventNameOfDescriptor(descriptor)));
    case "scpt"_4cc: {
        OSStatus status = noErr;
        const Value script = scriptFromImage(mMachine, descriptor.data(), status);
        if (!script.isFailure())
            return script;
        break;
    }
    case "psn "_4cc:
    case "kpid"_4cc:
        if (AEIsCurrentProcess(descriptor))
            return Value::object(mMachine.heap().make<Application>());
        break;
    case "aprl"_4cc: {
        Application* application = mMachine.heap().make<Application>();
        application->name = utf16FromUTF8(descriptor.data());
        return Value::object(application);
    }
    case "bund"_4cc: {
        Application* application = mMachine.heap().make<Application>();
        application->identifier = utf16FromUTF8(descriptor.data());
        return Value::object(application);
    }
    default:
        break;
    }
    if (mDepth >= kMaximumDescriptorDepth)
        return {};
    ++mDepth;
    Value result;
    if (descriptor.isList()) {
        List* list = mMachine.heap().list(descriptor.count());
        for (const AEDesc& item : descriptor.items())
            list->items[list->count++] = value(item);
        result = Value::object(list);
    } else if (const Value named = reference(descriptor); !named.isUndefined()) {
        result = named;
    } else if (descriptor.isRecord()) {
        result = record(descriptor);
    } else {
        result = Value::object(mMachine.heap().make<Data>(type, descriptor.data()));
    }
    --mDepth;
    return result;
}

Value FromDescriptor::record(const AEDesc& descriptor) {
    Record* record = mMachine.heap().record();
    Fields fields(record);
    if (descriptor.type() != "reco"_4cc)
        fields.set(Value::code("pcls"_4cc), Value::code(descriptor.type()));
    for (const AEItem& field : descriptor.fields()) {
        if (field.key != "usrf"_4cc) {
            fields.set(Value::code(field.key), value(field.value));
            continue;
        }
        auto items = field.value.items();
        for (std::size_t i = 0; i + 1 < items.size(); i += 2) {
            const std::string name = items[i].asUTF8().value_or(std::string());
            fields.set(symbolFor(mMachine, utf16FromUTF8(name)), value(items[i + 1]));
        }
    }
    return Value::object(record);
}

/// The reference that a descriptor describes: a specifier, a place, a test or a placeholder in one. Undefined for any other descriptor.
Value FromDescriptor::reference(const AEDesc& descriptor) {
    switch (descriptor.type()) {
    case "obj "_4cc:
        return specifier(descriptor);
    case "insl"_4cc:
        return insertionPoint(descriptor);
    case "cmpd"_4cc:
        return comparison(descriptor);
    case "logi"_4cc:
        return logical(descriptor);
    case "exmn"_4cc:
        return Value::object(mMachine.heap().make<Specifier>(Specifier::Form::Examined, Value(), Value(), Value(), Value()));
    case "ccnt"_4cc:
        return mRangeContainer.isUndefined() ? mOwner : mRangeContainer;
    default:
        return {};
    }
}

Value FromDescriptor::make(Specifier::Form form, Value container, Value a, Value b, Value c) {
    Specifier* made = mMachine.heap().make<Specifier>(form, container, a, b, c);
    made->flags = Specifier::kIsReference;
    return Value::object(made);
}

Value FromDescriptor::test(Opcode operation, Value left, Value right) {
    return make(Specifier::Form::Test, left, Value::integer(static_cast<std::int32_t>(operation)), right);
}

/// A descriptor that lacks a part, or has one that nobody knows, is data without meaning.
Value FromDescriptor::unknown(const AEDesc& descriptor) {
    return Value::object(mMachine.heap().make<Data>(descriptor.type(), std::string_view()));
}

Value FromDescriptor::comparison(const AEDesc& descriptor) {
    const AEDesc* left = descriptor.find("obj1"_4cc);
    const AEDesc* relation = descriptor.find("relo"_4cc);
    const AEDesc* right = descriptor.find("obj2"_4cc);
    if (left && relation && right)
        for (const TestRelation& row : kTestRelations)
            if (row.relation == relation->code()) {
                const Value first = value(*left);
                return test(row.opcode, first, value(*right));
            }
    return unknown(descriptor);
}

Value FromDescriptor::logical(const AEDesc& descriptor) {
    const AEDesc* operation = descriptor.find("logc"_4cc);
    const AEDesc* terms = descriptor.find("term"_4cc);
    if (!operation || !terms || !terms->isList() || terms->count() == 0)
        return unknown(descriptor);
    Value result = value(terms->items()[0]);
    if (operation->code() == "NOT "_4cc) {
        Specifier* denied = as<Specifier>(result);
        if (denied && denied->form == Specifier::Form::Test && denied->a == Value::integer(static_cast<std::int32_t>(Opcode::TestEqual)))
            return test(Opcode::TestNotEqual, denied->container, denied->b);
        return test(Opcode::TestNot, result);
    }
    const Opcode opcode = operation->code() == "AND "_4cc ? Opcode::TestAnd : Opcode::TestOr;
    for (const AEDesc& term : terms->items().subspan(1))
        result = test(opcode, result, value(term));
    return result;
}

Value FromDescriptor::insertionPoint(const AEDesc& descriptor) {
    const AEDesc* object = descriptor.find("kobj"_4cc);
    const AEDesc* position = descriptor.find("kpos"_4cc);
    if (!object || !position)
        return unknown(descriptor);
    const Value container = object->isNull() ? mOwner : value(*object);
    switch (position->code()) {
    case "bgng"_4cc:
        return make(Specifier::Form::Beginning, container);
    case "end "_4cc:
        return make(Specifier::Form::End, container);
    case "befo"_4cc:
        return make(Specifier::Form::Before, container, Value::code("insl"_4cc));
    case "afte"_4cc:
        return make(Specifier::Form::After, container, Value::code("insl"_4cc));
    case "rplc"_4cc:
        return container;
    default:
        return unknown(descriptor);
    }
}

/// A boundary of the range's own class, in the range's own container, is known by its key alone.
Value FromDescriptor::rangeBoundary(const AEDesc* boundary, Value elementClass) {
    if (!boundary)
        return {};
    const Value bound = value(*boundary);
    const Specifier* element = as<Specifier>(bound);
    const bool isPlain = element && element->form == Specifier::Form::Element && element->container == mRangeContainer &&
                         element->a == elementClass && !is<Specifier>(element->b);
    return isPlain ? element->b : bound;
}

Value FromDescriptor::range(const AEDesc& boundaries, Value container, Value elementClass) {
    const Value outer = std::exchange(mRangeContainer, container);
    const Value from = rangeBoundary(boundaries.find("star"_4cc), elementClass);
    const Value to = rangeBoundary(boundaries.find("stop"_4cc), elementClass);
    mRangeContainer = outer;
    return make(Specifier::Form::Range, container, elementClass, from, to);
}

Value FromDescriptor::specifier(const AEDesc& descriptor) {
    const AEDesc* wanted = descriptor.find("want"_4cc);
    const AEDesc* form = descriptor.find("form"_4cc);
    const AEDesc* data = descriptor.find("seld"_4cc);
    const AEDesc* from = descriptor.find("from"_4cc);
    if (!wanted || !form || !data)
        return unknown(descriptor);
    const Value holder = !from || from->isNull() ? mOwner : value(*from);
    const Value elementClass = Value::code(wanted->code());
    switch (form->code()) {
    case "prop"_4cc:
        return make(Specifier::Form::Property, holder, Value::code(data->code()));
    case "usrp"_4cc:
        return make(Specifier::Form::Property, holder, symbolFor(mMachine, data->asText().value_or(std::u16string())));
    case "indx"_4cc:
        if (data->type() == "abso"_4cc) {
            switch (data->code()) {
            case "all "_4cc:
                return make(Specifier::Form::Every, holder, elementClass);
            case "any "_4cc:
                return make(Specifier::Form::Some, holder, elementClass);
            case "midd"_4cc:
                return make(Specifier::Form::Middle, holder, elementClass);
            default:
                return make(Specifier::Form::Element, holder, elementClass, Value::integer(data->code() == "last"_4cc ? -1 : 1));
            }
        }
        return make(Specifier::Form::Element, holder, elementClass, value(*data));
    case "name"_4cc:
        return make(Specifier::Form::Element, holder, elementClass, value(*data));
    case "rang"_4cc:
        return range(*data, holder, elementClass);
    case "test"_4cc: {
        const Value every = make(Specifier::Form::Every, holder, elementClass);
        return make(Specifier::Form::Filter, every, value(*data));
    }
    case "rele"_4cc:
        return make(data->code() == "prev"_4cc ? Specifier::Form::Before : Specifier::Form::After, holder, elementClass);
    default:
        return make(Specifier::Form::ElementByKey, holder, elementClass, value(*data), Value::code(form->code()));
    }
}

} // namespace

Value valueFromDescriptor(Machine& machine, const AEDesc& descriptor, Value owner) {
    return FromDescriptor(machine, owner.isUndefined() ? Value::object(machine.heap().make<Application>()) : owner).value(descriptor);
}

} // namespace quoddle::component

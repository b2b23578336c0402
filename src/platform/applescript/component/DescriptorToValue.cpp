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
    explicit FromDescriptor(Machine& machine) : mMachine(machine) {}

    Value value(const AEDesc& descriptor);

private:
    Value record(const AEDesc& descriptor);
    Value specifier(const AEDesc& descriptor);

    Machine& mMachine;
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
    } else if (type == "obj "_4cc) {
        result = specifier(descriptor);
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

Value FromDescriptor::specifier(const AEDesc& descriptor) {
    const AEDesc* wanted = descriptor.find("want"_4cc);
    const AEDesc* form = descriptor.find("form"_4cc);
    const AEDesc* data = descriptor.find("seld"_4cc);
    const AEDesc* from = descriptor.find("from"_4cc);
    if (!wanted || !form || !data)
        return Value::object(mMachine.heap().make<Data>("obj "_4cc, std::string_view()));
    const Value holder = !from || from->isNull() ? Value::object(mMachine.heap().make<Application>()) : value(*from);
    const Value elementClass = Value::code(wanted->code());
    const auto make = [&](Specifier::Form kind, Value a, Value b = {}, Value c = {}) {
        Specifier* made = mMachine.heap().make<Specifier>(kind, holder, a, b, c);
        made->flags = Specifier::kIsReference;
        return Value::object(made);
    };
    switch (form->code()) {
    case "prop"_4cc:
        return make(Specifier::Form::Property, Value::code(data->code()));
    case "usrp"_4cc:
        return make(Specifier::Form::Property, symbolFor(mMachine, data->asText().value_or(std::u16string())));
    case "indx"_4cc:
        if (data->type() == "abso"_4cc) {
            switch (data->code()) {
            case "all "_4cc:
                return make(Specifier::Form::Every, elementClass);
            case "any "_4cc:
                return make(Specifier::Form::Some, elementClass);
            case "midd"_4cc:
                return make(Specifier::Form::Middle, elementClass);
            default:
                return make(Specifier::Form::Element, elementClass, Value::integer(data->code() == "last"_4cc ? -1 : 1));
            }
        }
        return make(Specifier::Form::Element, elementClass, value(*data));
    case "name"_4cc:
        return make(Specifier::Form::Element, elementClass, value(*data));
    default:
        return make(Specifier::Form::ElementByKey, elementClass, value(*data), Value::code(form->code()));
    }
}

} // namespace

Value valueFromDescriptor(Machine& machine, const AEDesc& descriptor) {
    return FromDescriptor(machine).value(descriptor);
}

} // namespace quoddle::component

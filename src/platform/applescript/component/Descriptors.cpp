// SPDX-License-Identifier: MIT
#include "platform/applescript/component/Descriptors.h"

#include "platform/ae/AEObjects.h"
#include "platform/applescript/compiler/Opcode.h"
#include "platform/applescript/component/EventCodes.h"
#include "platform/applescript/image/ImageReader.h"
#include "platform/applescript/image/ImageWriter.h"
#include "platform/applescript/language/References.h"
#include "platform/applescript/machine/Loader.h"
#include "platform/base/Text.h"

namespace quoddle {

namespace {

constexpr std::size_t kMaximumDepth = 64;

class ToDescriptor {
public:
    explicit ToDescriptor(Machine& machine) : mMachine(machine) {}

    std::optional<AEDesc> value(Value value);

private:
    std::optional<AEDesc> object(Value value);
    std::optional<AEDesc> list(const List* list);
    std::optional<AEDesc> record(const Record* record);
    std::optional<AEDesc> specifier(const Specifier* specifier);
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
    if (!value.isObject() || mDepth >= kMaximumDepth)
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

/// Fields that only the script names go into one list under "usrf". A class field gives the record its type.
std::optional<AEDesc> ToDescriptor::record(const Record* record) {
    AEDesc descriptor = AEDesc::record();
    AEDesc userFields = AEDesc::list();
    DescType type = "reco"_4cc;
    for (const Record::Entry& entry : record->entries) {
        if (entry.key == Value::code("pcls"_4cc) && entry.value.isCode()) {
            type = entry.value.asCode();
            continue;
        }
        auto field = value(entry.value);
        if (!field)
            return std::nullopt;
        if (const Symbol* symbol = as<Symbol>(entry.key)) {
            (void)userFields.insertItem(0, AEDesc::ofUTF8(symbol->spelling));
            (void)userFields.insertItem(0, std::move(*field));
        } else {
            (void)descriptor.put(entry.key.asCode(), std::move(*field));
        }
    }
    if (userFields.count() > 0)
        (void)descriptor.put("usrf"_4cc, std::move(userFields));
    return type == "reco"_4cc ? descriptor : descriptor.withType(type);
}

/// An application itself is the null container: the event's address says which.
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
    return AEDesc::record({{"want"_4cc, AEDesc::ofType(wanted)}, {"form"_4cc, AEDesc::ofEnum(form)}, {"seld"_4cc, std::move(*data)}, {"from"_4cc, std::move(*from)}},
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
        {Opcode::TestEqual, "=   "_4cc},          {Opcode::TestNotEqual, "=   "_4cc},    {Opcode::TestGreater, ">   "_4cc},
        {Opcode::TestGreaterOrEqual, ">=  "_4cc}, {Opcode::TestLess, "<   "_4cc},        {Opcode::TestLessOrEqual, "<=  "_4cc},
        {Opcode::TestStartsWith, "bgwt"_4cc},     {Opcode::TestEndsWith, "ends"_4cc},    {Opcode::TestContains, "cont"_4cc},
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
    if (mDepth >= kMaximumDepth)
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
        return element(objects && objects->a.isCode() ? objects->a.asCode() : "cobj"_4cc, what->container, "test"_4cc, std::move(description));
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

// --- The other way

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
        const std::int64_t whole = descriptor.asInt64().value_or(0);
        return fitsInteger(whole) ? Value::integer(static_cast<std::int32_t>(whole)) : Value::real(static_cast<double>(whole));
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
        return Value::object(mMachine.heap().make<Application>());
    case "bund"_4cc: {
        Application* application = mMachine.heap().make<Application>();
        application->identifier = utf16FromUTF8(descriptor.data());
        return Value::object(application);
    }
    default:
        break;
    }
    if (mDepth >= kMaximumDepth)
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
    const auto set = [record](Value key, Value value) {
        if (Record::Entry* known = record->find(key))
            known->value = value;
        else
            record->entries.push_back({key, value});
    };
    if (descriptor.type() != "reco"_4cc)
        set(Value::code("pcls"_4cc), Value::code(descriptor.type()));
    for (const AEItem& field : descriptor.fields()) {
        if (field.key != "usrf"_4cc) {
            set(Value::code(field.key), value(field.value));
            continue;
        }
        auto items = field.value.items();
        for (std::size_t i = 0; i + 1 < items.size(); i += 2) {
            const std::string name = items[i].asUTF8().value_or(std::string());
            set(symbolFor(mMachine, utf16FromUTF8(name)), value(items[i + 1]));
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

std::optional<AEDesc> descriptorFromValue(Machine& machine, Value value) {
    return ToDescriptor(machine).value(value);
}

Value valueFromDescriptor(Machine& machine, const AEDesc& descriptor) {
    return FromDescriptor(machine).value(descriptor);
}

Value symbolFor(Machine& machine, std::u16string_view name) {
    const std::string spelling = utf8FromUTF16(name);
    if (name.size() > 2 && name.starts_with(u'|') && name.ends_with(u'|')) {
        const std::string exact = spelling.substr(1, spelling.size() - 2);
        return Value::object(machine.heap().symbol(exact, exact));
    }
    std::string key = spelling;
    for (char& c : key)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c + 32);
    return Value::object(machine.heap().symbol(key, spelling));
}

std::optional<std::string> imageFromScript(Machine& machine, Value script, bool runOnly, OSStatus& status) {
    Saver saver(machine);
    const Object* root = saver.save(script, runOnly);
    status = saver.status();
    if (!root)
        return std::nullopt;
    auto bytes = writeImage(root);
    if (bytes)
        return std::move(*bytes);
    status = bytes.error();
    return std::nullopt;
}

Value scriptFromImage(Machine& machine, std::string_view bytes, OSStatus& status) {
    auto image = readImage(bytes);
    if (!image) {
        status = image.error();
        return Value::failure();
    }
    status = noErr;
    if (image->root->isNil())
        return Value::object(machine.heap().make<Script>());
    return Loader(machine, image->store).load(image->root);
}

AEDesc addressOf(const Application& application) {
    if (!application.identifier.empty())
        return AEDesc("bund"_4cc, utf8FromUTF16(application.identifier));
    if (!application.name.empty())
        return AEDesc("aprl"_4cc, utf8FromUTF16(application.name));
    return AEDesc::ofCurrentProcess();
}

const Application* applicationOf(Value value) {
    for (std::size_t depth = 0; depth < 1000; ++depth) {
        if (const Application* application = as<Application>(value))
            return application;
        const Specifier* specifier = as<Specifier>(value);
        if (!specifier)
            return nullptr;
        value = specifier->container;
    }
    return nullptr;
}

} // namespace quoddle

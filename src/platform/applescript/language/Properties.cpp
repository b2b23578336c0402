// SPDX-License-Identifier: MIT
// Properties of values: tables of what each class has.
#include "platform/ae/transport/AERunningApplications.h"
#include "platform/applescript/language/Coercion.h"
#include "platform/applescript/language/Commands.h"
#include "platform/applescript/language/Dates.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/language/Files.h"
#include "platform/applescript/language/References.h"
#include "platform/applescript/language/TextElements.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <unicode/utf16.h>
#include <unordered_map>

namespace quoddle::language {

using namespace machine;

namespace {

const Value kContents = Value::code("pcnt"_4cc);

/// Whether a script or a record has a property "contents" of its own.
bool hasContents(Machine& machine, Value container) {
    if (Script* script = as<Script>(container))
        return machine.findSlot(script, kContents);
    const Record* record = as<Record>(container);
    return record && record->find(kContents);
}

Value noSuchProperty(Machine& machine, Value container, Value key) {
    const Value what = Value::object(machine.heap().make<Specifier>(Specifier::Form::Property, container, key, Value(), Value()));
    return machine.raise(errAENoSuchObject, u"Can’t get " + inMessage(machine, what) + u".", what);
}

bool cannotSet(Machine& machine, Value container, Value key, Value value) {
    const Value what = Value::object(machine.heap().make<Specifier>(Specifier::Form::Property, container, key, Value(), Value()));
    machine.raise(-10006, u"Can’t set " + inMessage(machine, what) + u" to " + inMessage(machine, value) + u".", what);
    return false;
}

Value codePoints(Machine& machine, const Text* text) {
    List* list = machine.heap().list(text->length);
    for (std::uint32_t i = 0; i < text->length;) {
        UChar32 c;
        U16_NEXT(text->characters, i, text->length, c);
        list->items[list->count++] = Value::integer(c);
    }
    return list->count == 1 ? list->items[0] : Value::object(list);
}

Value quotedForm(Machine& machine, const Text* text) {
    std::u16string quoted = u"'";
    for (char16_t c : text->view()) {
        if (c == u'\'')
            quoted += u"'\\''";
        else
            quoted += c;
    }
    return Value::object(machine.heap().text(quoted + u"'"));
}

/// A property of a text. Failure, with nothing raised, when texts have no such property.
Value textProperty(Machine& machine, const Text* text, FourCharCode key) {
    switch (key) {
    case "leng"_4cc:
        return Value::integer(static_cast<std::int32_t>(characterCount(machine, text)));
    case "ID  "_4cc:
        return codePoints(machine, text);
    case "strq"_4cc:
        return quotedForm(machine, text);
    case "posx"_4cc: // the same word as a property of System Events: its own terms win inside a tell
    case "psxp"_4cc: // QUIRK: a text has a POSIX path, that of the colon path in it; scripts ask texts for it without making a file
        return Value::object(machine.heap().text(utf16FromUTF8(posixPathFromColons(text->view()))));
    default:
        return Value::failure();
    }
}

Value listProperty(Machine& machine, List* list, FourCharCode key) {
    switch (key) {
    case "leng"_4cc:
        return Value::integer(static_cast<std::int32_t>(list->count));
    case "rvse"_4cc: {
        List* reversed = machine.heap().list(list->count);
        std::reverse_copy(list->items, list->items + list->count, reversed->items);
        reversed->count = list->count;
        return Value::object(reversed);
    }
    case "rest"_4cc: {
        return Value::object(list->count == 0 ? machine.heap().list() : machine.heap().part(list, 1, list->count - 1));
    }
    default:
        return Value::failure();
    }
}

Value fileProperty(Machine& machine, const Data* file, FourCharCode key) {
    const std::string path = posixPath(*file);
    if (key == "psxp"_4cc || key == "posx"_4cc) {
        std::error_code error;
        const bool isFolder = !path.ends_with('/') && std::filesystem::is_directory(path, error);
        return Value::object(machine.heap().text(utf16FromUTF8(isFolder ? path + '/' : path)));
    }
    if (key == "pnam"_4cc) {
        std::string_view name = path;
        while (name.size() > 1 && name.ends_with('/'))
            name.remove_suffix(1);
        return Value::object(machine.heap().text(utf16FromUTF8(name.substr(name.rfind('/') + 1))));
    }
    return Value::failure();
}

Value scriptProperty(Machine& machine, Script* script, Value key) {
    if (key == Value::code("pare"_4cc)) {
        Script* parent = machine.parentOf(script);
        return parent ? Value::object(parent) : script->parent;
    }
    if (key == Value::code("pnam"_4cc) && script != machine.appleScript()) {
        if (const Symbol* name = as<Symbol>(script->name))
            return Value::object(machine.heap().text(utf16FromUTF8(name->spelling)));
        if (const Value* slot = script->find(key))
            return *slot;
    }
    Script* holder = nullptr;
    if (const Value* slot = machine.findSlot(script, key, &holder); slot && !slot->isUndefined())
        return machine.taken(*slot, holder);
    return Value::failure();
}

Value applicationProperty(Machine& machine, const Application* application, FourCharCode key) {
    if (key == "pnam"_4cc && !application->name.empty())
        return Value::object(machine.heap().text(application->name));
    if (key == "pnam"_4cc && application->identifier.empty())
        return Value::object(machine.heap().text(utf16FromUTF8(AECurrentApplicationName())));
    if (key == "ID  "_4cc && !application->identifier.empty())
        return Value::object(machine.heap().text(application->identifier));
    return Value::failure();
}

Value ownProperty(Machine& machine, Value container, Value key) {
    const FourCharCode code = key.isCode() ? key.asCode() : 0;
    if (const Text* text = as<Text>(container))
        return textProperty(machine, text, code);
    if (List* list = as<List>(container))
        return listProperty(machine, list, code);
    if (Record* record = as<Record>(container)) {
        if (const Record::Entry* entry = record->find(key))
            return entry->value;
        return code == "leng"_4cc ? Value::integer(static_cast<std::int32_t>(record->entries.size())) : Value::failure();
    }
    if (Script* script = as<Script>(container))
        return scriptProperty(machine, script, key);
    if (const Date* date = as<Date>(container))
        return dateProperty(machine, date, code);
    if (const Data* data = as<Data>(container); data && isFile(container))
        return fileProperty(machine, data, code);
    if (const Application* application = as<Application>(container))
        return applicationProperty(machine, application, code);
    return Value::failure();
}

} // namespace

Value textFromCodePoints(Machine& machine, Value points) {
    points = follow(machine, points);
    if (points.isFailure())
        return points;
    std::u16string text;
    const auto append = [&](Value point) {
        std::int64_t number;
        if (!wholeOf(machine, point, number))
            return false;
        if (number < 0 || number > 0x10FFFF || U_IS_SURROGATE(number)) {
            machine.raise(errAENoSuchObject, u"Can’t get character id " + inMessage(machine, point) + u".", point);
            return false;
        }
        const auto c = static_cast<UChar32>(number);
        char16_t units[2];
        std::int32_t length = 0;
        U16_APPEND_UNSAFE(units, length, c);
        text.append(units, static_cast<std::size_t>(length));
        return true;
    };
    if (const List* list = as<List>(points)) {
        for (std::uint32_t i = 0; i < list->count; ++i)
            if (!append(list->items[i]))
                return Value::failure();
    } else if (!append(points)) {
        return Value::failure();
    }
    return Value::object(machine.heap().text(text));
}

bool isPropertyOfList(Value key) {
    static constexpr FourCharCode kCodes[] = {"leng"_4cc, "nmbr"_4cc, "rvse"_4cc, "rest"_4cc, "pcnt"_4cc, "pcls"_4cc};
    return key.isCode() && std::find(std::begin(kCodes), std::end(kCodes), key.asCode()) != std::end(kCodes);
}

Value getProperty(Machine& machine, Value container, Value key, Evaluate how) {
    const auto specifier = [&] {
        return Value::object(machine.heap().make<Specifier>(Specifier::Form::Property, container, key, Value(), Value()));
    };
    if (how == Evaluate::Never)
        return specifier();
    if (container.isUndefined())
        return machine.raise(-2763, u"No result was returned from some part of this expression.");
    if (const Specifier* holder = as<Specifier>(container)) {
        if (!isLocal(container)) {
            // "contents" of a reference is what the reference names, whatever the application calls by that word.
            const Value named = key == kContents && holder->flags & Specifier::kIsReference ? container : specifier();
            return how == Evaluate::Fully ? getFromApplication(machine, named) : named;
        }
        if (isMany(holder->form) && !isPropertyOfList(key))
            return evaluate(machine, specifier(), how);
        container = follow(machine, container);
        if (container.isFailure() || (key == kContents && !hasContents(machine, container)))
            return container;
        return getProperty(machine, container, key, how);
    }
    // "contents" of a reference or a script is the value itself, of any other value a copy.
    if (key == kContents && !hasContents(machine, container))
        return is<Script>(container) ? container : deepCopy(machine, container);
    const Value own = ownProperty(machine, container, key);
    if (!own.isFailure())
        return own;
    if (key == Value::code("pcls"_4cc))
        return classOf(container);
    if (is<Application>(container))
        return how == Evaluate::Fully ? getFromApplication(machine, specifier()) : specifier();
    if (key == Value::code("nmbr"_4cc) && (is<List>(container) || is<Text>(container) || is<Record>(container)))
        return count(machine, container);
    // A raw code such as «class PNGf» by itself is a value where no script has a property of that code.
    if (is<Script>(container) && key.isCode() && !isKnownProperty(key.asCode()))
        return key;
    return noSuchProperty(machine, container, key);
}

bool setProperty(Machine& machine, Value container, Value key, Value value) {
    if (is<Specifier>(container) || is<Application>(container)) {
        const Value what = Value::object(machine.heap().make<Specifier>(Specifier::Form::Property, container, key, Value(), Value()));
        const Specifier* holder = as<Specifier>(container);
        const bool isOfReference = key == kContents && holder && holder->flags & Specifier::kIsReference;
        if (!isLocal(container))
            return setInApplication(machine, isOfReference ? container : what, value);
        if (key == kContents) // "set contents of x to …" sets what the reference x names
            return setSpecifier(machine, container, value);
        container = follow(machine, container);
        if (container.isFailure())
            return false;
        return setProperty(machine, container, key, value);
    }
    if (Record* record = as<Record>(container)) {
        if (Record::Entry* entry = record->find(key)) {
            entry->value = value;
            return true;
        }
        return cannotSet(machine, container, key, value);
    }
    if (Script* script = as<Script>(container)) {
        if (key == Value::code("pare"_4cc))
            return setParent(machine, script, value);
        if (Value* slot = machine.findSlot(script, key)) {
            *slot = value;
            return true;
        }
        return cannotSet(machine, container, key, value);
    }
    if (Date* date = as<Date>(container); date && key.isCode() && setDateProperty(machine, date, key.asCode(), value))
        return true;
    else if (date && machine.error().number)
        return false;
    return cannotSet(machine, container, key, value);
}

namespace {

Value copyOf(Machine& machine, Value value, std::unordered_map<const HeapObject*, Value>& copies, std::size_t depth) {
    if (!value.isObject())
        return value;
    if (auto known = copies.find(value.asObject()); known != copies.end())
        return known->second;
    if (depth > 1000)
        return machine.raise(errOSAStackOverflow, u"Stack overflow.");
    const auto remember = [&](HeapObject* copy) { return copies[value.asObject()] = Value::object(copy); };
    if (const List* list = as<List>(value)) {
        List* copy = machine.heap().list(list->count);
        copy->flags = list->flags;
        remember(copy);
        for (std::uint32_t i = 0; i < list->count; ++i) {
            const Value item = copyOf(machine, list->items[i], copies, depth + 1);
            if (item.isFailure())
                return item;
            copy->items[copy->count++] = item;
        }
        return Value::object(copy);
    }
    if (const Record* record = as<Record>(value)) {
        Record* copy = machine.heap().record();
        remember(copy);
        for (const Record::Entry& entry : record->entries) {
            const Value part = copyOf(machine, entry.value, copies, depth + 1);
            if (part.isFailure())
                return part;
            copy->entries.push_back({entry.key, part});
        }
        return Value::object(copy);
    }
    if (const Date* date = as<Date>(value))
        return remember(machine.heap().make<Date>(date->seconds));
    if (Handler* handler = as<Handler>(value); handler && handler->home) {
        const auto home = copies.find(handler->home);
        Script* script = home == copies.end() ? handler->home : as<Script>(home->second);
        return remember(machine.heap().make<Handler>(handler, script));
    }
    if (Script* script = as<Script>(value); script && script != machine.appleScript()) {
        Script* copy = machine.heap().make<Script>();
        remember(copy);
        copy->layout = script->layout;
        copy->name = script->name;
        copy->tree = script->tree;
        copy->store = script->store;
        copy->outer = script->outer;
        if (script->sharedNames)
            copy->sharedNames = std::make_unique<std::unordered_set<std::string>>(*script->sharedNames);
        // A copy of a script keeps the scripts around its definition, which are its parents by place and no part of it.
        const bool isInherent = script->isDefinedWithin(as<Script>(script->parent)) && !copies.contains(script->parent.asObject());
        copy->parent = isInherent ? script->parent : copyOf(machine, script->parent, copies, depth + 1);
        for (Value slot : script->slots) {
            copy->slots.push_back(copyOf(machine, slot, copies, depth + 1));
            if (copy->slots.back().isFailure())
                return Value::failure();
            if (Script* inner = as<Script>(copy->slots.back()); inner && inner->outer == script)
                inner->outer = copy;
        }
        return Value::object(copy);
    }
    return value;
}

} // namespace

Value deepCopy(Machine& machine, Value value) {
    std::unordered_map<const HeapObject*, Value> copies;
    return copyOf(machine, value, copies, 0);
}

} // namespace quoddle::language

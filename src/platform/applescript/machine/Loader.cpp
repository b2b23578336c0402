// SPDX-License-Identifier: MIT
#include "platform/applescript/machine/Loader.h"

#include "platform/applescript/image/Block.h"
#include "platform/applescript/syntax/ApplicationLiteral.h"
#include "platform/base/Text.h"

#include <unordered_set>

namespace quoddle::machine {

namespace {

constexpr std::size_t kMaximumDepth = 900;
constexpr std::uint8_t kDescriptorTag = 13; // Data of a descriptor: its type code, then its bytes

std::int64_t integerAt(std::string_view bytes, std::size_t at, std::size_t size) {
    std::uint64_t value = 0;
    for (std::size_t i = at; i < at + size && i < bytes.size(); ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return static_cast<std::int64_t>(value);
}

struct FormRow {
    std::uint8_t tag;
    Specifier::Form form;
    std::size_t children;
};
constexpr FormRow kForms[] = {
    {block::Property, Specifier::Form::Property, 2},
    {block::Every, Specifier::Form::Every, 2},
    {block::Some, Specifier::Form::Some, 2},
    {block::Element, Specifier::Form::Element, 3},
    {block::ElementByKey, Specifier::Form::ElementByKey, 4},
    {block::Filter, Specifier::Form::Filter, 2},
    {block::Range, Specifier::Form::Range, 4},
    {28, Specifier::Form::Before, 2},
    {29, Specifier::Form::After, 2},
    {30, Specifier::Form::Beginning, 1},
    {31, Specifier::Form::End, 1},
    {32, Specifier::Form::Middle, 2},
};

} // namespace

// --- Loading

Value Loader::load(const Object* object) {
    if (++mDepth > kMaximumDepth) {
        --mDepth;
        return {};
    }
    Value value;
    switch (object->kind) {
    case ObjectKind::Nil:
        break;
    case ObjectKind::Boolean:
        value = Value::boolean(object->boolean);
        break;
    case ObjectKind::Integer:
        value = fitsInteger(object->integer) ? Value::integer(object->integer) : Value::real(object->integer);
        break;
    case ObjectKind::Real:
        value = Value::real(object->real);
        break;
    case ObjectKind::Code:
        value = loadCode(object);
        break;
    case ObjectKind::Identifier:
        value = Value::object(mMachine.heap().symbol(object->bytes, object->spelledName()));
        break;
    case ObjectKind::Text:
        value = Value::object(mMachine.heap().text(object->text));
        break;
    case ObjectKind::Data:
        value = loadData(object);
        break;
    case ObjectKind::List:
        value = loadList(object->children, 0);
        break;
    case ObjectKind::Record: {
        Record* record = mMachine.heap().record();
        for (std::size_t i = 0; i + 1 < object->children.size(); i += 2)
            record->entries.push_back({load(object->children[i]), load(object->children[i + 1])});
        value = Value::object(record);
        break;
    }
    case ObjectKind::Block:
        value = loadBlock(object);
        break;
    case ObjectKind::Raw:
    case ObjectKind::Vector:
    case ObjectKind::Node:
        value = Value::object(mMachine.heap().make<Stored>(object));
        break;
    }
    if (--mDepth == 0)
        assignHandlerHomes();
    return value;
}

/// A handler in a slot of another name was taken from some other script. Looks for the script that defines the handler, in the scopes
/// around, and makes that the handler's home.
void Loader::assignHandlerHomes() {
    if (mScripts.empty())
        return;
    ++mDepth; // so that load() does not begin anew for each name
    for (const auto& [object, value] : mScripts) {
        Script* script = as<Script>(value);
        for (std::size_t i = 0; script && i < script->slots.size(); ++i) {
            Handler* handler = as<Handler>(script->slots[i]);
            if (!handler || handler->source->children.size() < block::kHandlerChildren)
                continue;
            const Value name = load(handler->source->children[block::kName]);
            if (name == script->layout->names[i])
                continue;
            HeapObject* scope = script;
            for (int limit = 0; scope && !handler->home && limit < kMaximumScopes; ++limit, scope = scopeAround(scope)) {
                Script* owner = scope->type == HeapType::Script ? static_cast<Script*>(scope) : nullptr;
                const Value* slot = owner ? owner->find(name) : nullptr;
                if (const Handler* defined = slot ? as<Handler>(*slot) : nullptr; defined && defined->source == handler->source)
                    handler->home = owner;
            }
        }
    }
    --mDepth;
}

Value Loader::loadCode(const Object* object) {
    if (object->isCode(CodeTag::Event))
        return Value::object(mMachine.heap().eventName(object->bytes));
    if (!object->isCode(CodeTag::Constant))
        return Value::code(object->code());
    const FourCharCode enumeration = object->code(0), value = object->code(1);
    if (enumeration == "boov"_4cc)
        return Value::boolean(value == "true"_4cc);
    if (enumeration == "misc"_4cc && value == "cura"_4cc)
        return Value::object(mMachine.heap().make<Application>());
    return Value::constant(value, mMachine.enumeration(enumeration));
}

Value Loader::loadList(std::span<Object* const> items, std::uint8_t flags) {
    List* list = mMachine.heap().list(items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        list->items[i] = load(items[i]);
    list->count = static_cast<std::uint32_t>(items.size());
    list->flags = flags;
    return Value::object(list);
}

Value Loader::loadData(const Object* object) {
    if (object->tag == syntax::kApplicationTag)
        return loadApplication(object);
    if (object->tag != kDescriptorTag || object->bytes.size() < 4)
        return Value::object(mMachine.heap().make<Stored>(object));
    const FourCharCode type = fourCharCode(object->bytes.substr(0, 4));
    const std::string_view bytes = object->bytes.substr(4);
    if (type == "ldt "_4cc && bytes.size() == 8)
        return Value::object(mMachine.heap().make<Date>(integerAt(bytes, 0, 8)));
    return Value::object(mMachine.heap().make<Data>(type, bytes));
}

Value Loader::loadApplication(const Object* object) {
    Application* application = mMachine.heap().make<Application>();
    application->literal = object;
    application->name = syntax::applicationName(object->bytes);
    return Value::object(application);
}

Value Loader::loadSpecifier(const Object* object) {
    for (const FormRow& row : kForms) {
        if (row.tag != object->tag || object->children.size() != row.children)
            continue;
        Value parts[4];
        for (std::size_t i = 0; i < row.children; ++i)
            parts[i] = load(object->children[i]);
        const bool isApplication = row.form == Specifier::Form::ElementByKey && parts[1] == Value::code("capp"_4cc);
        if (const Text* identifier = as<Text>(parts[2]); isApplication && identifier) {
            Application* application = mMachine.heap().make<Application>();
            application->identifier = identifier->view();
            return Value::object(application);
        }
        return Value::object(mMachine.heap().make<Specifier>(row.form, parts[0], parts[1], parts[2], parts[3]));
    }
    return Value::object(mMachine.heap().make<Stored>(object));
}

Value Loader::loadBlock(const Object* object) {
    switch (object->tag) {
    case block::List: {
        if (object->children.size() != 2 || object->children[0]->kind != ObjectKind::Integer)
            return {};
        auto items = object->children[1]->children;
        const auto count = static_cast<std::size_t>(std::max(0, object->children[0]->integer));
        return loadList(items.subspan(0, std::min(items.size(), count)), 0);
    }
    case block::Script:
        return loadScript(object);
    case block::Handler:
    case block::Closure:
        return Value::object(mMachine.heap().make<Handler>(object, mStore));
    case block::Examined:
        return Value::object(mMachine.heap().make<Specifier>(Specifier::Form::Examined, Value(), Value(), Value(), Value()));
    case block::Reference: {
        const Value inner = object->children.size() == 1 ? load(object->children[0]) : Value();
        if (is<Specifier>(inner))
            inner.asObject()->flags |= Specifier::kIsReference;
        return inner;
    }
    default:
        return loadSpecifier(object);
    }
}

/// Finds which script has which table, before any script is loaded: scripts refer to the scopes around them by table.
void Loader::findScripts(const Object* root) {
    std::vector<const Object*> pending{root};
    std::unordered_set<const Object*> seen{root};
    while (!pending.empty()) {
        const Object* object = pending.back();
        pending.pop_back();
        if (object->isBlock(block::Script) && object->children.size() >= block::kScriptChildren)
            mTableOwners.try_emplace(object->children[block::kScriptTable], object);
        if (object->kind == ObjectKind::Node) // syntax trees hold no scripts
            continue;
        for (const Object* child : object->children)
            if (!child->children.empty() && seen.insert(child).second)
                pending.push_back(child);
    }
}

HeapObject* Loader::loadScope(const Object* table) {
    if (table->kind != ObjectKind::Vector || table->children.size() < 2)
        return nullptr;
    if (auto owner = mTableOwners.find(table); owner != mTableOwners.end()) {
        const Value script = load(owner->second);
        return script.isObject() ? script.asObject() : nullptr;
    }
    if (auto known = mEnvironments.find(table); known != mEnvironments.end())
        return known->second;
    auto names = table->children[1]->children;
    const std::size_t count = std::min(names.size(), table->children.size() - 2);
    Environment* environment = mEnvironments[table] = mMachine.heap().make<Environment>(nullptr, count);
    std::vector<Value> loaded;
    for (std::size_t i = 0; i < count; ++i) {
        loaded.push_back(load(names[i]));
        environment->values[i] = load(table->children[i + 2]);
    }
    environment->names = std::make_shared<const std::vector<Value>>(std::move(loaded));
    if (++mDepth < kMaximumDepth)
        environment->outer = loadScope(table->children[0]);
    --mDepth;
    return environment;
}

Value Loader::loadScript(const Object* object) {
    if (object->children.size() < block::kScriptChildren)
        return Value::object(mMachine.appleScript());
    if (mScripts.empty())
        findScripts(object);
    if (auto known = mScripts.find(object); known != mScripts.end())
        return known->second;
    Script* script = mMachine.heap().make<Script>();
    const Value value = Value::object(script);
    mScripts[object] = value;
    script->store = mStore;
    script->name = load(object->children[block::kScriptName]);
    script->tree = object->children[block::kScriptTree]->isNil() ? nullptr : object->children[block::kScriptTree];
    const Value parent = load(object->children[block::kScriptParent]);
    script->parent = parent == Value::object(mMachine.appleScript()) ? Value() : parent;

    auto table = object->children[block::kScriptTable]->children;
    auto names = table.size() > 1 ? table[1]->children : std::span<Object*>();
    for (std::size_t i = 0; i < names.size() && i + 2 < table.size(); ++i) {
        // A place without a name is kept, because handlers address slots by place.
        if (names[i]->isNil())
            script->layout->names.emplace_back();
        else
            script->layout->indexes.try_emplace(load(names[i]).bits(), static_cast<std::uint32_t>(script->layout->names.size())),
                script->layout->names.push_back(load(names[i]));
        script->slots.push_back(load(table[i + 2]));
    }
    if (!table.empty())
        script->outer = loadScope(table[0]);
    for (std::size_t i = 0; i < script->layout->names.size(); ++i)
        if (script->layout->names[i] == Value::code("pare"_4cc) && is<Script>(script->slots[i]))
            script->parent = script->slots[i];
    return value;
}

// --- Saving

Object* Saver::save(Value value, bool runOnly) {
    mRunOnly = runOnly;
    Object* object = saveValue(value);
    return mStatus == noErr ? object : nullptr;
}

Object* Saver::saveValue(Value value) {
    if (value.isUndefined() || mStatus != noErr)
        return mStore->nil();
    if (value.isBoolean())
        return mStore->constant("boov"_4cc, value.isTrue() ? "true"_4cc : "fals"_4cc);
    if (value.isInteger())
        return mStore->integer(value.asInteger());
    if (value.isReal())
        return mStore->real(value.asReal());
    if (value.isCode())
        return mStore->code(value.asCode());
    if (value.isConstant()) {
        const FourCharCode enumeration = mMachine.enumerationCode(value.enumeration());
        return enumeration ? mStore->constant(enumeration, value.asCode()) : mStore->code(value.asCode());
    }
    if (++mDepth > kMaximumDepth)
        mStatus = errOSADataBlockTooLarge;
    Object* object = mStatus == noErr ? saveObject(value.asObject()) : mStore->nil();
    --mDepth;
    return object;
}

Object* Saver::saveObject(HeapObject* object) {
    if (auto saved = mSaved.find(object); saved != mSaved.end())
        return saved->second;
    switch (object->type) {
    case HeapType::Symbol: {
        const auto* symbol = static_cast<const Symbol*>(object);
        return mStore->identifier(symbol->key, symbol->spelling);
    }
    case HeapType::EventName:
        return mStore->event(static_cast<const EventName*>(object)->bytes);
    case HeapType::Text:
        return mSaved[object] = mStore->text(static_cast<const Text*>(object)->view());
    case HeapType::List: {
        const auto* list = static_cast<const List*>(object);
        Object* storage = mStore->unfinished(ObjectKind::Block, block::Storage, list->count);
        Object* saved = mSaved[object] =
            mStore->block(block::List, {mStore->integer(static_cast<std::int32_t>(list->count)), list->count ? storage : mStore->nil()});
        for (std::uint32_t i = 0; i < list->count; ++i)
            storage->children[i] = saveValue(list->items[i]);
        return saved;
    }
    case HeapType::Record:
        return saveRecord(static_cast<const Record*>(object));
    case HeapType::Date: {
        std::string bytes = "ldt ";
        for (int shift = 56; shift >= 0; shift -= 8)
            bytes += static_cast<char>(static_cast<std::uint64_t>(static_cast<const Date*>(object)->seconds) >> shift & 0xFF);
        return mStore->data(kDescriptorTag, bytes);
    }
    case HeapType::Data: {
        const auto* data = static_cast<const Data*>(object);
        return mStore->data(kDescriptorTag, bytesOf(data->dataType) + data->bytes);
    }
    case HeapType::Application:
        return saveApplication(static_cast<const Application*>(object));
    case HeapType::Specifier:
        return saveSpecifier(static_cast<const Specifier*>(object));
    case HeapType::Handler:
        return saveHandler(static_cast<const Handler*>(object));
    case HeapType::Script:
        return saveScript(static_cast<Script*>(object));
    case HeapType::Stored:
        return const_cast<Object*>(static_cast<const Stored*>(object)->object);
    case HeapType::Environment:
        break;
    }
    return mStore->nil();
}

Object* Saver::saveApplication(const Application* application) {
    if (application->literal)
        return const_cast<Object*>(application->literal);
    if (!application->name.empty())
        return mStore->data(syntax::kApplicationTag, syntax::applicationData(application->name));
    if (!application->identifier.empty())
        return mStore->block(block::ElementByKey, {mStore->nil(), mStore->code("capp"_4cc), mStore->text(application->identifier),
                                                   mStore->constant("kfrm"_4cc, "ID  "_4cc)});
    return mStore->constant("misc"_4cc, "cura"_4cc);
}

Object* Saver::saveRecord(const Record* record) {
    std::vector<Object*> entries;
    for (const Record::Entry& entry : record->entries) {
        entries.push_back(saveValue(entry.key));
        entries.push_back(saveValue(entry.value));
    }
    return mStore->record(entries);
}

Object* Saver::saveHandler(const Handler* handler) {
    if (!mRunOnly)
        return const_cast<Object*>(handler->source);
    std::vector<Object*> children(handler->source->children.begin(), handler->source->children.end());
    children[block::kTree] = mStore->nil();
    Object* saved = mSaved[handler] = mStore->block(handler->source->tag, children);
    // The handlers and initialisers inside a handler are literals of its code.
    Object* literals = children[block::kLiterals];
    std::vector<Object*> inner(literals->children.begin(), literals->children.end());
    for (Object*& literal : inner)
        if (literal->isBlock(block::Handler) || literal->isBlock(block::Closure)) {
            Handler nested(literal, handler->store);
            if (++mDepth < kMaximumDepth)
                literal = saveHandler(&nested);
            --mDepth;
            mSaved.erase(&nested);
        }
    saved->children[block::kLiterals] = mStore->vector(inner);
    return saved;
}

Object* Saver::saveSpecifier(const Specifier* specifier) {
    for (const FormRow& row : kForms) {
        if (row.form != specifier->form)
            continue;
        const Value parts[] = {specifier->container, specifier->a, specifier->b, specifier->c};
        std::vector<Object*> children;
        for (std::size_t i = 0; i < row.children; ++i)
            children.push_back(saveValue(parts[i]));
        Object* saved = mStore->block(row.tag, children);
        return specifier->flags & Specifier::kIsReference ? mStore->block(block::Reference, {saved}) : saved;
    }
    return mStore->block(block::Examined, {});
}

Object* Saver::saveScope(HeapObject* scope) {
    if (!scope || scope == mMachine.appleScript())
        return mStore->nil();
    if (++mDepth > kMaximumDepth)
        mStatus = errOSADataBlockTooLarge;
    Object* table = mStore->nil();
    if (mStatus != noErr) {
    } else if (scope->type == HeapType::Script) {
        table = saveObject(scope)->children[block::kScriptTable];
    } else if (auto saved = mSaved.find(scope); saved != mSaved.end()) {
        table = saved->second;
    } else {
        auto* environment = static_cast<Environment*>(scope);
        const std::size_t count = environment->names ? environment->names->size() : 0;
        Object* names = mStore->unfinished(ObjectKind::Vector, 0, count);
        table = mSaved[scope] = mStore->unfinished(ObjectKind::Vector, 0, count + 2);
        table->children[1] = names;
        table->children[0] = saveScope(environment->outer);
        for (std::size_t i = 0; i < count; ++i) {
            names->children[i] = saveValue((*environment->names)[i]);
            table->children[i + 2] = saveValue(environment->values[i]);
        }
    }
    --mDepth;
    return table;
}

Object* Saver::saveScript(Script* script) {
    if (script == mMachine.appleScript())
        return mSaved[script] = mStore->block(block::Script, {});
    Object* saved = mSaved[script] = mStore->unfinished(ObjectKind::Block, block::Script, block::kScriptChildren);
    // The table exists before the contents are saved, because scripts inside refer to it as their scope.
    Object* names = mStore->unfinished(ObjectKind::Vector, 0, script->slots.size());
    Object* table = mStore->unfinished(ObjectKind::Vector, 0, script->slots.size() + 2);
    saved->children[block::kScriptTable] = table;
    table->children[0] = saveScope(script->outer);
    table->children[1] = names;
    saved->children[block::kScriptName] = saveValue(script->name);
    if (script->tree && !mRunOnly)
        saved->children[block::kScriptTree] = const_cast<Object*>(script->tree);
    saved->children[block::kScriptParent] =
        script->parent.isUndefined() ? saveValue(Value::object(mMachine.appleScript())) : saveValue(script->parent);
    for (std::size_t i = 0; i < script->slots.size(); ++i) {
        names->children[i] = saveValue(script->layout->names[i]);
        table->children[i + 2] = saveValue(script->slots[i]);
    }
    return saved;
}

} // namespace quoddle::machine

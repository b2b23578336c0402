// SPDX-License-Identifier: MIT
#include "platform/applescript/component/Component.h"

#include <functional>

namespace quoddle::component {

using namespace machine;

namespace {

class Fingerprint {
public:
    std::uint64_t of(Value value) {
        add(value);
        while (!mPending.empty()) {
            const HeapObject* object = mPending.back();
            mPending.pop_back();
            addParts(object);
        }
        return mHash;
    }

private:
    void mix(std::uint64_t part) {
        mHash = (mHash ^ part) * 0x9E3779B97F4A7C15u;
        mHash ^= mHash >> 32;
    }
    template<class Character>
    void mix(std::basic_string_view<Character> characters) {
        mix(characters.size());
        mix(std::hash<std::basic_string_view<Character>>()(characters));
    }

    /// Objects are hashed by the order in which they are met, because by the next time another object may have the address.
    void add(Value value) {
        const HeapObject* object = value.asObject();
        if (!object)
            return mix(value.bits());
        const auto [met, isNew] = mOrder.try_emplace(object, mOrder.size());
        mix(met->second);
        if (isNew)
            mPending.push_back(object);
    }
    void add(const HeapObject* object) { object ? add(Value::object(object)) : mix(0); }

    void addParts(const HeapObject* object) {
        mix(static_cast<std::uint64_t>(object->type));
        const Value value = Value::object(object);
        if (const Text* text = as<Text>(value))
            mix(text->view());
        else if (const Symbol* symbol = as<Symbol>(value))
            mix(std::string_view(symbol->key));
        else if (const EventName* event = as<EventName>(value))
            mix(std::string_view(event->bytes));
        else if (const Date* date = as<Date>(value))
            mix(static_cast<std::uint64_t>(date->seconds));
        else if (const Data* data = as<Data>(value))
            mix(data->dataType), mix(std::string_view(data->bytes));
        else if (const Application* application = as<Application>(value))
            mix(std::u16string_view(application->name)), mix(std::u16string_view(application->identifier));
        else if (const Handler* handler = as<Handler>(value)) // stored objects never move, so their addresses serve
            mix(reinterpret_cast<std::uintptr_t>(handler->source)), add(handler->home);
        else if (const Stored* stored = as<Stored>(value))
            mix(reinterpret_cast<std::uintptr_t>(stored->object));
        else
            addContents(value);
    }

    void addContents(Value value) {
        if (const List* list = as<List>(value)) {
            mix(list->count);
            for (std::uint32_t i = 0; i < list->count; ++i)
                add(list->items[i]);
        } else if (const Record* record = as<Record>(value)) {
            mix(record->entries.size());
            for (const auto& [key, field] : record->entries)
                add(key), add(field);
        } else if (const Specifier* specifier = as<Specifier>(value)) {
            mix(static_cast<std::uint64_t>(specifier->form) << 8 | specifier->flags);
            for (const Value part : {specifier->container, specifier->a, specifier->b, specifier->c})
                add(part);
        } else if (const Environment* environment = as<Environment>(value)) {
            mix(environment->values.size());
            for (const Value local : environment->values)
                add(local);
            add(environment->outer);
        } else if (const Script* script = as<Script>(value)) {
            mix(script->slots.size());
            for (std::size_t i = 0; i < script->slots.size(); ++i)
                add(script->layout->names[i]), add(script->slots[i]);
            add(script->parent);
            add(script->outer);
        }
    }

    std::uint64_t mHash = 0;
    std::unordered_map<const HeapObject*, std::uint64_t> mOrder;
    std::vector<const HeapObject*> mPending;
};

} // namespace

std::uint64_t fingerprintOf(Value value) {
    return Fingerprint().of(value);
}

} // namespace quoddle::component

// SPDX-License-Identifier: MIT
// The objects in the heap of a machine. They are plain records: the operations on them are in language/, the Heap makes and frees them.
//
// Objects never move. A pointer that is held outside a value that the collector can reach must not be kept across a safe point (see
// Heap.h).
#pragma once

#include "platform/applescript/image/Object.h"
#include "platform/applescript/machine/Value.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quoddle::machine {

enum class HeapType : std::uint8_t {
    Symbol,
    EventName,
    Text,
    List,
    Record,
    Date,
    Data,
    Application,
    Specifier,
    Handler,
    Script,
    Environment,
    Stored,
};

struct HeapObject {
    HeapType type;
    bool marked = false;
    std::uint8_t flags = 0;

    explicit HeapObject(HeapType heapType) : type(heapType) {}
};

/// A user identifier. Interned, so two symbols are the same name exactly when they are the same object.
struct Symbol : HeapObject {
    static constexpr HeapType kType = HeapType::Symbol;
    std::string key; // UTF-8, as compared
    std::string spelling;

    Symbol(std::string_view symbolKey, std::string_view symbolSpelling) : HeapObject(kType), key(symbolKey), spelling(symbolSpelling) {}
};

/// The name of a command, by class and ID. Interned.
struct EventName : HeapObject {
    static constexpr HeapType kType = HeapType::EventName;
    FourCharCode eventClass;
    FourCharCode eventID;
    std::string bytes; // codes and flags, 24 bytes, as first met

    EventName(std::string_view eventBytes)
        : HeapObject(kType), eventClass(fourCharCode(eventBytes.substr(0, 4))), eventID(fourCharCode(eventBytes.substr(4, 4))),
          bytes(eventBytes) {}
};

/// Room for characters that several texts share. A text that grows at the end of its buffer takes the free room behind, one that grows at
/// the beginning the free room in front.
struct TextBuffer {
    std::uint32_t references;
    std::uint32_t begin; // units of free room in front
    std::uint32_t used;  // where the free room behind begins
    std::uint32_t capacity;
    char16_t* characters() { return reinterpret_cast<char16_t*>(this + 1); }
};

/// Immutable UTF-16 text.
struct Text : HeapObject {
    static constexpr HeapType kType = HeapType::Text;
    enum Flags : std::uint8_t {
        kKnownSimple = 1,  // every unit is a character of its own
        kKnownComplex = 2, // some characters take several units
    };
    std::uint32_t length;
    const char16_t* characters;
    TextBuffer* buffer; // the text's share of its room; null for an empty text

    Text() : HeapObject(kType), length(0), characters(u""), buffer(nullptr) {}
    std::u16string_view view() const { return {characters, length}; }
};

/// Room for items that several lists share, as texts share characters. `used` is valid while there are several.
struct alignas(Value) ListBuffer {
    std::uint32_t references;
    std::uint32_t used;
    std::uint32_t capacity;
    Value* values() { return reinterpret_cast<Value*>(this + 1); }
};

/// A list needs a buffer of its own (Heap::detach) before an item is replaced.
struct List : HeapObject {
    static constexpr HeapType kType = HeapType::List;
    enum Flags : std::uint8_t { kLinked = 1 }; // made by "as linked list"
    std::uint32_t count = 0;
    Value* items = nullptr;
    ListBuffer* buffer = nullptr; // the list's share of its room; null for a list that never had an item

    List() : HeapObject(kType) {}
    bool isShared() const { return buffer && buffer->references > 1; }
    /// The index in the buffer behind the last item.
    std::size_t end() const { return buffer ? static_cast<std::size_t>(items - buffer->values()) + count : 0; }
};

struct Record : HeapObject {
    static constexpr HeapType kType = HeapType::Record;
    struct Entry {
        Value key; // a code or a symbol
        Value value;
    };
    std::vector<Entry> entries;

    Record() : HeapObject(kType) {}
    Entry* find(Value key) {
        for (Entry& entry : entries)
            if (entry.key == key)
                return &entry;
        return nullptr;
    }
    const Entry* find(Value key) const { return const_cast<Record*>(this)->find(key); }
};

/// Seconds since 1904-01-01 00:00, local time.
struct Date : HeapObject {
    static constexpr HeapType kType = HeapType::Date;
    std::int64_t seconds;

    explicit Date(std::int64_t value) : HeapObject(kType), seconds(value) {}
};

/// Bytes with a descriptor type: aliases, files and everything that only applications understand.
struct Data : HeapObject {
    static constexpr HeapType kType = HeapType::Data;
    FourCharCode dataType;
    std::string bytes;

    Data(FourCharCode descriptorType, std::string_view content) : HeapObject(kType), dataType(descriptorType), bytes(content) {}
};

struct Application : HeapObject {
    static constexpr HeapType kType = HeapType::Application;
    std::u16string name;             // as written, without ".app"; empty: the current application
    std::u16string identifier;       // of "application id"; empty otherwise
    const Object* literal = nullptr; // the stored form that it was loaded from; null otherwise

    Application() : HeapObject(kType) {}
};

/// A reference to something in a container. An expression builds a raw specifier; a reference value is stored and passed like any other
/// value.
struct Specifier : HeapObject {
    static constexpr HeapType kType = HeapType::Specifier;
    enum Flags : std::uint8_t { kIsReference = 1 };
    enum class Form : std::uint8_t {
        Property,
        Every,
        Some,
        Element,
        ElementByKey,
        Filter,
        Range,
        Before,
        After,
        Beginning,
        End,
        Middle,
        Examined,
        Test
    };
    Form form;
    Value container; // of a Test the left side
    Value a;         // property or class; of a Test the operator as an integer or the Filter's test
    Value b;         // index, name, key or first boundary; of a Test the right side
    Value c;         // key form or second boundary

    Specifier(Form specifierForm, Value holder, Value first, Value second, Value third)
        : HeapObject(kType), form(specifierForm), container(holder), a(first), b(second), c(third) {}
};

struct Code;

struct Script;

/// A handler in the slot where its definition put it belongs to the script that has the slot. Taken out as a value it remembers that
/// script.
struct Handler : HeapObject {
    static constexpr HeapType kType = HeapType::Handler;
    const Object* source;
    std::shared_ptr<ObjectStore> store; // keeps `source`
    Code* code = nullptr;               // made at the first call; a handler taken as a value uses, and does not own, its definition's
    Handler* definition = nullptr;      // the handler that this value was taken from; null for a handler in its slot
    Script* home = nullptr;             // the script whose slots the code addresses; null means the script that holds the handler

    Handler(const Object* block, std::shared_ptr<ObjectStore> blockStore);
    /// Takes `original`, a handler of `script`, as a value.
    Handler(Handler* original, Script* script);
    ~Handler();
    Handler(const Handler&) = delete;
    Handler& operator=(const Handler&) = delete;
};

/// The locals of a handler, when script objects inside it use them. Scopes are linked outwards through `outer`.
struct Environment : HeapObject {
    static constexpr HeapType kType = HeapType::Environment;
    HeapObject* outer;
    std::vector<Value> values;
    std::shared_ptr<const std::vector<Value>> names; // one for each value; null when the names are not known

    Environment(HeapObject* outerScope, std::size_t count) : HeapObject(kType), outer(outerScope), values(count) {}
};

/// The names of a script's slots. The scripts that one definition makes share a layout until one of them gets a slot of its own.
struct Layout {
    Layout() = default;
    Layout(const Layout& other) : names(other.names), indexes(other.indexes) {}

    std::uint32_t id = ++sLastID; // never reused: caches compare it
    std::vector<Value> names;
    std::unordered_map<std::uint64_t, std::uint32_t> indexes;

    static constexpr std::uint32_t kNone = UINT32_MAX;
    std::uint32_t find(Value name) const {
        auto entry = indexes.find(name.bits());
        return entry == indexes.end() ? kNone : entry->second;
    }
    std::uint32_t add(Value name) {
        auto [entry, isNew] = indexes.try_emplace(name.bits(), static_cast<std::uint32_t>(names.size()));
        if (isNew)
            names.push_back(name);
        return entry->second;
    }

private:
    static inline std::atomic<std::uint32_t> sLastID{0};
};

struct Script : HeapObject {
    static constexpr HeapType kType = HeapType::Script;
    std::shared_ptr<Layout> layout;
    std::vector<Value> slots; // as many as the layout has names
    Value name;
    Value parent;                // the declared one, else the script around the definition; undefined means the AppleScript object
    HeapObject* outer = nullptr; // the scope around the definition: an environment or a script
    const Object* tree = nullptr;
    std::shared_ptr<ObjectStore> store; // keeps `tree`
    // what the compiler calls the names that code added to this script knows; null before the first such code
    std::unique_ptr<std::unordered_set<std::string>> sharedNames;

    Script() : HeapObject(kType), layout(std::make_shared<Layout>()) {}
    Value* find(Value slotName) {
        const std::uint32_t index = layout->find(slotName);
        return index == Layout::kNone ? nullptr : &slots[index];
    }
    /// Adds the slot when it is new.
    void set(Value slotName, Value value);
    /// Removes a name, if it is there. The place of its slot stays, because handlers address slots by place.
    void remove(Value slotName);
    /// Whether this script object is defined in `other` or in one of its handlers, at any depth.
    bool isDefinedWithin(const Script* other) const;
};

/// Bound on the depth of nested scopes, because a stored script may hold a ring of them.
constexpr int kMaximumScopes = 1000;
/// The scope around an environment or a script; null for the outermost one.
inline HeapObject* scopeAround(const HeapObject* scope) {
    return scope->type == HeapType::Script ? static_cast<const Script*>(scope)->outer : static_cast<const Environment*>(scope)->outer;
}

/// A stored object that a script passes about as a value (the tree of a script definition, an unusual literal).
struct Stored : HeapObject {
    static constexpr HeapType kType = HeapType::Stored;
    const Object* object;

    explicit Stored(const Object* stored) : HeapObject(kType), object(stored) {}
};

template<class T>
inline bool is(Value value) {
    return value.isObject() && value.asObject()->type == T::kType;
}

/// Null when the value is something else.
template<class T>
inline T* as(Value value) {
    return is<T>(value) ? static_cast<T*>(value.asObject()) : nullptr;
}

} // namespace quoddle::machine

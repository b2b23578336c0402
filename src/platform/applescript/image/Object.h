// SPDX-License-Identifier: MIT
// The stored objects: what a compiled script consists of when it does not run.
//
// One model for everything that a compiled script holds: syntax-tree nodes, handlers, literals and saved property values. The parser builds
// it, the printer and the compiler read it, the image reader and writer move it between memory and file. The running machine has values of
// its own (machine/Value.h) and never changes an object that it was loaded from.
//
// Decision: objects live in an ObjectStore and are plain records linked by pointers; graphs may be cyclic and may cross stores. Price:
// nothing is freed before its store is. This model does not know what the objects mean; syntax/NodeKind.h and image/Block.h name their
// tags.
#pragma once

#include "platform/base/FourCharCode.h"

#include <cstdint>
#include <deque>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quoddle {

enum class ObjectKind : std::uint8_t {
    Nil,
    Boolean,
    Integer,
    Real,
    Code,       // `tag` is a CodeTag; `bytes` holds 4, 8 or 24 bytes
    Identifier, // `bytes` = comparison key in UTF-8, `spelling` = as written (empty: spelled like the key)
    Text,       // `text`; flags bit 0: stored in the old 8-bit form
    Data,       // tagged bytes
    Raw,        // untagged bytes (code)
    List,       // children
    Record,     // children: key, value, key, value …
    Block,      // tagged vector: `tag` as in image/Block.h
    Vector,     // untagged vector
    Node,       // syntax-tree node: `tag` is a NodeKind; with flags, and start and end offset in the handler's code
};

enum class CodeTag : std::uint8_t {
    Class = 0x0A,    // 4 bytes: class, property, label or bare constant
    Constant = 0x0B, // 8 bytes: enumeration and value
    Event = 0x2E,    // 24 bytes: class, id, reply type, reply flags, direct flags, direct type
};

struct Object {
    ObjectKind kind = ObjectKind::Nil;
    std::uint8_t tag = 0;
    std::uint16_t flags = 0;
    std::uint32_t start = 0;
    std::uint32_t end = 0;
    union {
        std::int32_t integer = 0;
        double real;
        bool boolean;
    };
    std::span<Object*> children;
    std::string_view bytes;
    std::string_view spelling;
    std::u16string_view text;

    bool isNil() const { return kind == ObjectKind::Nil; }
    bool isNode(std::uint8_t nodeTag) const { return kind == ObjectKind::Node && tag == nodeTag; }
    bool isBlock(std::uint8_t blockTag) const { return kind == ObjectKind::Block && tag == blockTag; }
    bool isCode(CodeTag codeTag) const { return kind == ObjectKind::Code && tag == static_cast<std::uint8_t>(codeTag); }
    /// The i-th four-character code of a Code object's bytes; 0 beyond its end.
    FourCharCode code(std::size_t i = 0) const { return bytes.size() >= 4 * i + 4 ? fourCharCode(bytes.substr(4 * i, 4)) : 0; }
    std::string_view spelledName() const { return spelling.empty() ? bytes : spelling; }
};

/// Owns objects and everything they point to. Not thread-safe while being built; afterwards it may be read from any thread.
class ObjectStore {
public:
    ObjectStore() = default;
    ObjectStore(const ObjectStore&) = delete;
    ObjectStore& operator=(const ObjectStore&) = delete;

    /// The one nil of this store.
    Object* nil();
    Object* boolean(bool value);
    Object* integer(std::int32_t value);
    Object* real(double value);
    Object* code(FourCharCode code);
    Object* constant(FourCharCode enumeration, FourCharCode value);
    /// 24 bytes, see CodeTag::Event.
    Object* event(std::string_view bytes);
    /// A spelling that equals the key is stored as an empty one.
    Object* identifier(std::string_view key, std::string_view spelling = {});
    Object* text(std::u16string_view text);
    Object* data(std::uint8_t tag, std::string_view bytes);
    Object* raw(std::string_view bytes);
    Object* list(std::span<Object* const> items);
    Object* list(std::initializer_list<Object*> items) { return list(std::span(items.begin(), items.size())); }
    Object* record(std::span<Object* const> keysAndValues);
    Object* block(std::uint8_t tag, std::span<Object* const> children);
    Object* block(std::uint8_t tag, std::initializer_list<Object*> children) {
        return block(tag, std::span(children.begin(), children.size()));
    }
    Object* vector(std::span<Object* const> children);
    Object* node(std::uint8_t tag, std::span<Object* const> children, std::uint16_t flags = 0);
    Object* node(std::uint8_t tag, std::initializer_list<Object*> children, std::uint16_t flags = 0) {
        return node(tag, std::span(children.begin(), children.size()), flags);
    }

    /// For the image reader, which has to know an object before its children: an object with room for `count` children, all nil until set.
    Object* unfinished(ObjectKind kind, std::uint8_t tag, std::size_t count);

    /// Copies bytes or text; the copy lives as long as the store.
    std::string_view keep(std::string_view bytes);
    std::u16string_view keep(std::u16string_view text);

    std::size_t size() const { return mObjects.size(); }

private:
    Object* make(ObjectKind kind, std::uint8_t tag = 0);
    std::span<Object*> keepChildren(std::span<Object* const> children);

    std::deque<Object> mObjects;
    std::deque<std::string> mBytes;
    std::deque<std::u16string> mTexts;
    std::deque<std::vector<Object*>> mChildren;
    Object* mNil = nullptr;
};

} // namespace quoddle

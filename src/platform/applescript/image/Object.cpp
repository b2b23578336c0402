// SPDX-License-Identifier: MIT
#include "platform/applescript/image/Object.h"

namespace quoddle {

Object* ObjectStore::make(ObjectKind kind, std::uint8_t tag) {
    Object& object = mObjects.emplace_back();
    object.kind = kind;
    object.tag = tag;
    return &object;
}

std::string_view ObjectStore::keep(std::string_view bytes) {
    return bytes.empty() ? std::string_view() : std::string_view(mBytes.emplace_back(bytes));
}

std::u16string_view ObjectStore::keep(std::u16string_view text) {
    return text.empty() ? std::u16string_view() : std::u16string_view(mTexts.emplace_back(text));
}

std::span<Object*> ObjectStore::keepChildren(std::span<Object* const> children) {
    if (children.empty())
        return {};
    return mChildren.emplace_back(children.begin(), children.end());
}

Object* ObjectStore::nil() {
    if (!mNil)
        mNil = make(ObjectKind::Nil);
    return mNil;
}

Object* ObjectStore::boolean(bool value) {
    Object* object = make(ObjectKind::Boolean);
    object->boolean = value;
    return object;
}

Object* ObjectStore::integer(std::int32_t value) {
    Object* object = make(ObjectKind::Integer);
    object->integer = value;
    return object;
}

Object* ObjectStore::real(double value) {
    Object* object = make(ObjectKind::Real);
    object->real = value;
    return object;
}

Object* ObjectStore::code(FourCharCode code) {
    Object* object = make(ObjectKind::Code, static_cast<std::uint8_t>(CodeTag::Class));
    object->bytes = keep(bytesOf(code));
    return object;
}

Object* ObjectStore::constant(FourCharCode enumeration, FourCharCode value) {
    Object* object = make(ObjectKind::Code, static_cast<std::uint8_t>(CodeTag::Constant));
    object->bytes = keep(bytesOf(enumeration) + bytesOf(value));
    return object;
}

Object* ObjectStore::event(std::string_view bytes) {
    Object* object = make(ObjectKind::Code, static_cast<std::uint8_t>(CodeTag::Event));
    object->bytes = keep(bytes);
    return object;
}

Object* ObjectStore::identifier(std::string_view key, std::string_view spelling) {
    Object* object = make(ObjectKind::Identifier);
    object->bytes = keep(key);
    object->spelling = spelling == key ? std::string_view() : keep(spelling);
    return object;
}

Object* ObjectStore::text(std::u16string_view text) {
    Object* object = make(ObjectKind::Text);
    object->text = keep(text);
    return object;
}

Object* ObjectStore::data(std::uint8_t tag, std::string_view bytes) {
    Object* object = make(ObjectKind::Data, tag);
    object->bytes = keep(bytes);
    return object;
}

Object* ObjectStore::raw(std::string_view bytes) {
    Object* object = make(ObjectKind::Raw);
    object->bytes = keep(bytes);
    return object;
}

Object* ObjectStore::list(std::span<Object* const> items) {
    Object* object = make(ObjectKind::List);
    object->children = keepChildren(items);
    return object;
}

Object* ObjectStore::record(std::span<Object* const> keysAndValues) {
    Object* object = make(ObjectKind::Record);
    object->children = keepChildren(keysAndValues);
    return object;
}

Object* ObjectStore::block(std::uint8_t tag, std::span<Object* const> children) {
    Object* object = make(ObjectKind::Block, tag);
    object->children = keepChildren(children);
    return object;
}

Object* ObjectStore::vector(std::span<Object* const> children) {
    Object* object = make(ObjectKind::Vector);
    object->children = keepChildren(children);
    return object;
}

Object* ObjectStore::node(std::uint8_t tag, std::span<Object* const> children, std::uint16_t flags) {
    Object* object = make(ObjectKind::Node, tag);
    object->flags = flags;
    object->children = keepChildren(children);
    return object;
}

Object* ObjectStore::unfinished(ObjectKind kind, std::uint8_t tag, std::size_t count) {
    Object* object = make(kind, tag);
    if (count > 0)
        object->children = mChildren.emplace_back(count, nil());
    return object;
}

} // namespace quoddle

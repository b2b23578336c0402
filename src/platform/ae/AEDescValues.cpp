// SPDX-License-Identifier: MIT
// Makes descriptors from plain values and reads plain values from descriptors.
#include "platform/ae/AECoercion.h"
#include "platform/ae/AEDesc.h"
#include "platform/base/FileURL.h"
#include "platform/base/Text.h"

#include <cstring>

namespace quoddle {

namespace {

template<class T>
AEDesc ofBytes(DescType type, const T& value) {
    return {type, {reinterpret_cast<const char*>(&value), sizeof value}};
}

template<class T>
std::optional<T> read(const AEDesc& desc, DescType type) {
    std::optional<AEDesc> coerced = AECoerced(desc, type);
    if (!coerced || coerced->data().size() != sizeof(T))
        return {};
    T value;
    std::memcpy(&value, coerced->data().data(), sizeof value);
    return value;
}

} // namespace

AEDesc AEDesc::ofInt32(std::int32_t value) {
    return ofBytes("long"_4cc, value);
}

AEDesc AEDesc::ofInt64(std::int64_t value) {
    return ofBytes("comp"_4cc, value);
}

AEDesc AEDesc::ofDouble(double value) {
    return ofBytes("doub"_4cc, value);
}

AEDesc AEDesc::ofBoolean(bool value) {
    return ofBytes("bool"_4cc, static_cast<char>(value));
}

AEDesc AEDesc::ofCode(DescType type, FourCharCode code) {
    return ofBytes(type, code);
}

AEDesc AEDesc::ofType(FourCharCode code) {
    return ofCode("type"_4cc, code);
}

AEDesc AEDesc::ofEnum(FourCharCode code) {
    return ofCode("enum"_4cc, code);
}

AEDesc AEDesc::ofText(std::u16string_view text) {
    return {"utxt"_4cc, {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)}};
}

AEDesc AEDesc::ofUTF8(std::string_view text) {
    return ofText(utf16FromUTF8(text));
}

AEDesc AEDesc::ofFilePath(std::string_view path) {
    return {"furl"_4cc, fileURLFromPath(path)};
}

AEDesc AEDesc::ofDate(std::int64_t seconds) {
    return ofBytes("ldt "_4cc, seconds);
}

AEDesc AEDesc::ofProcess(std::int32_t processID) {
    return ofBytes("kpid"_4cc, processID);
}

AEDesc AEDesc::ofCurrentProcess() {
    constexpr std::uint32_t kCurrentProcess[2] = {0, 2}; // the high and low words of the serial number that means the current process
    return ofBytes("psn "_4cc, kCurrentProcess);
}

std::optional<std::int32_t> AEDesc::asInt32() const {
    return read<std::int32_t>(*this, "long"_4cc);
}

std::optional<std::int64_t> AEDesc::asInt64() const {
    return read<std::int64_t>(*this, "comp"_4cc);
}

std::optional<std::uint64_t> AEDesc::asUInt64() const {
    return read<std::uint64_t>(*this, "ucom"_4cc);
}

std::optional<double> AEDesc::asDouble() const {
    return read<double>(*this, "doub"_4cc);
}

std::optional<bool> AEDesc::asBoolean() const {
    std::optional<char> byte = read<char>(*this, "bool"_4cc);
    return byte ? std::optional(*byte != 0) : std::nullopt;
}

std::optional<FourCharCode> AEDesc::asType() const {
    return read<FourCharCode>(*this, "type"_4cc);
}

std::optional<FourCharCode> AEDesc::asEnum() const {
    return read<FourCharCode>(*this, "enum"_4cc);
}

std::optional<std::u16string> AEDesc::asText() const {
    std::optional<AEDesc> coerced = AECoerced(*this, "utxt"_4cc);
    if (!coerced)
        return {};
    std::string_view bytes = coerced->data();
    std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
    bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(char16_t));
    return text;
}

std::optional<std::string> AEDesc::asUTF8() const {
    std::optional<std::u16string> text = asText();
    return text ? std::optional(utf8FromUTF16(*text)) : std::nullopt;
}

std::optional<std::string> AEDesc::asFilePath() const {
    std::optional<AEDesc> coerced = AECoerced(*this, "furl"_4cc);
    return coerced ? pathFromFileURL(coerced->data()) : std::nullopt;
}

} // namespace quoddle

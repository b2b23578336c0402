// SPDX-License-Identifier: MIT
#include "platform/ae/AEScalars.h"

#include "platform/base/FileURL.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace quoddle {

namespace {

struct NumberType {
    DescType type;
    std::size_t size;
    AENumber (*read)(const char* bytes);
    std::optional<AEDesc> (*write)(const AENumber& number, DescType type);
};

template<class T>
AENumber readAs(const char* bytes) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    if constexpr (std::is_floating_point_v<T>)
        return static_cast<double>(value);
    else if constexpr (std::is_signed_v<T>)
        return static_cast<std::int64_t>(value);
    else
        return static_cast<std::uint64_t>(value);
}

template<class T>
std::optional<T> converted(const AENumber& number) {
    if constexpr (std::is_floating_point_v<T>) {
        return std::visit([](auto value) { return static_cast<T>(value); }, number);
    } else {
        if (const auto* real = std::get_if<double>(&number)) {
            double rounded = std::nearbyint(*real);
            const double beyond = std::ldexp(1.0, std::numeric_limits<T>::digits);
            bool inRange = rounded >= static_cast<double>(std::numeric_limits<T>::min()) && rounded < beyond;
            return inRange ? std::optional(static_cast<T>(rounded)) : std::nullopt;
        }
        const auto* whole = std::get_if<std::int64_t>(&number);
        bool fits = whole ? std::in_range<T>(*whole) : std::in_range<T>(std::get<std::uint64_t>(number));
        T value = whole ? static_cast<T>(*whole) : static_cast<T>(std::get<std::uint64_t>(number));
        return fits ? std::optional(value) : std::nullopt;
    }
}

template<class T>
std::optional<AEDesc> writeAs(const AENumber& number, DescType type) {
    std::optional<T> value = converted<T>(number);
    if (!value)
        return {};
    // The padding bytes of an 80-bit real are not copied, because they may hold anything.
    constexpr bool kPadded = std::is_same_v<T, long double> && std::numeric_limits<T>::digits == 64;
    char bytes[sizeof(T)] = {};
    std::memcpy(bytes, &*value, kPadded ? 10 : sizeof(T));
    return AEDesc(type, {bytes, sizeof bytes});
}

template<class T>
constexpr NumberType numberType(DescType type) {
    return {type, sizeof(T), readAs<T>, writeAs<T>};
}

constexpr NumberType kNumberTypes[] = {
    numberType<std::int16_t>("shor"_4cc),  numberType<std::uint16_t>("ushr"_4cc), numberType<std::int32_t>("long"_4cc),
    numberType<std::uint32_t>("magn"_4cc), numberType<std::int64_t>("comp"_4cc),  numberType<std::uint64_t>("ucom"_4cc),
    numberType<float>("sing"_4cc),         numberType<double>("doub"_4cc),        numberType<long double>("ldbl"_4cc),
};

const NumberType* numberTypeOf(DescType type) {
    const auto* found =
        std::find_if(std::begin(kNumberTypes), std::end(kNumberTypes), [type](const auto& row) { return row.type == type; });
    return found == std::end(kNumberTypes) ? nullptr : found;
}

struct TextType {
    DescType type;
    std::u16string (*read)(std::string_view bytes);
    std::optional<AEDesc> (*write)(std::u16string_view text, DescType type);
};

std::u16string readUTF16(std::string_view bytes, bool swapped) {
    std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
    bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(char16_t));
    if (swapped)
        for (char16_t& unit : text)
            unit = static_cast<char16_t>(unit << 8 | unit >> 8);
    return text;
}

std::u16string readNative(std::string_view bytes) {
    return readUTF16(bytes, false);
}

std::optional<AEDesc> writeNative(std::u16string_view text, DescType type) {
    return AEDesc::ofText(text).withType(type);
}

// Decodes text in external form: a byte-order mark decides; without one, text is big-endian.
std::u16string readExternal(std::string_view bytes) {
    bool littleEndian = bytes.starts_with("\xFF\xFE");
    if (littleEndian || bytes.starts_with("\xFE\xFF"))
        bytes.remove_prefix(2);
    return readUTF16(bytes, littleEndian != (std::endian::native == std::endian::little));
}

std::optional<AEDesc> writeExternal(std::u16string_view text, DescType type) {
    std::string bytes = "\xFE\xFF";
    for (char16_t unit : text)
        bytes += {static_cast<char>(unit >> 8), static_cast<char>(unit)};
    return AEDesc(type, bytes);
}

std::optional<AEDesc> writeUTF8(std::u16string_view text, DescType type) {
    return AEDesc(type, utf8FromUTF16(text));
}

std::optional<AEDesc> writeMacRoman(std::u16string_view text, DescType type) {
    return AEDesc(type, macRomanFromUTF16(text));
}

std::u16string readCString(std::string_view bytes) {
    return utf16FromMacRoman(bytes.substr(0, bytes.find('\0')));
}

std::optional<AEDesc> writeCString(std::u16string_view text, DescType type) {
    return AEDesc(type, macRomanFromUTF16(text) + '\0');
}

std::u16string readPascalString(std::string_view bytes) {
    std::size_t length = bytes.empty() ? 0 : static_cast<unsigned char>(bytes[0]);
    return bytes.empty() ? std::u16string() : utf16FromMacRoman(bytes.substr(1, length));
}

std::optional<AEDesc> writePascalString(std::u16string_view text, DescType type) {
    std::string bytes = macRomanFromUTF16(text);
    if (bytes.size() > 255)
        return {};
    return AEDesc(type, static_cast<char>(bytes.size()) + bytes);
}

// The header of international text: two bytes for the script and two for the language. Text in that script follows.
constexpr std::size_t kInternationalHeader = 4;

std::u16string readInternational(std::string_view bytes) {
    return utf16FromMacRoman(bytes.substr(std::min(kInternationalHeader, bytes.size())));
}

std::optional<AEDesc> writeInternational(std::u16string_view text, DescType type) {
    return AEDesc(type, std::string(kInternationalHeader, '\0') + macRomanFromUTF16(text));
}

// A styled text is a record with the text under "ktxt"; some senders send only the text.
std::optional<AEDesc> writeStyled(std::u16string_view text, DescType type) {
    DescType plain = type == "sutx"_4cc ? "utxt"_4cc : "TEXT"_4cc;
    return AEDesc::record({{"ktxt"_4cc, *writeText(text, plain)}}, type);
}

constexpr TextType kTextTypes[] = {
    {"utxt"_4cc, readNative, writeNative},
    {"utf8"_4cc, utf16FromUTF8, writeUTF8},
    {"TEXT"_4cc, utf16FromMacRoman, writeMacRoman},
    {"ut16"_4cc, readExternal, writeExternal},
    {"itxt"_4cc, readInternational, writeInternational},
    {"STXT"_4cc, utf16FromMacRoman, writeStyled},
    {"sutx"_4cc, readNative, writeStyled},
    {"encs"_4cc, utf16FromMacRoman, writeMacRoman},
    {"cstr"_4cc, readCString, writeCString},
    {"pstr"_4cc, readPascalString, writePascalString},
};

const TextType* textTypeOf(DescType type) {
    const auto* found = std::find_if(std::begin(kTextTypes), std::end(kTextTypes), [type](const auto& row) { return row.type == type; });
    return found == std::end(kTextTypes) ? nullptr : found;
}

template<std::size_t N>
bool contains(const DescType (&types)[N], DescType type) {
    return std::find(types, types + N, type) != types + N;
}

} // namespace

bool isNumberType(DescType type) {
    return numberTypeOf(type);
}

bool isTextType(DescType type) {
    return textTypeOf(type);
}

bool isBooleanType(DescType type) {
    constexpr DescType kBooleanTypes[] = {"bool"_4cc, "true"_4cc, "fals"_4cc};
    return contains(kBooleanTypes, type);
}

bool isCodeType(DescType type) {
    constexpr DescType kCodeTypes[] = {"type"_4cc, "enum"_4cc, "prop"_4cc, "keyw"_4cc, "kfrm"_4cc, "abso"_4cc, "sign"_4cc};
    return contains(kCodeTypes, type);
}

bool isFileType(DescType type) {
    constexpr DescType kFileTypes[] = {"furl"_4cc, "alis"_4cc, "bmrk"_4cc, "file"_4cc, "fsrf"_4cc, "psxf"_4cc};
    return contains(kFileTypes, type);
}

std::optional<AENumber> readNumber(const AEDesc& desc) {
    const NumberType* row = numberTypeOf(desc.type());
    if (!row || desc.data().size() != row->size)
        return {};
    return row->read(desc.data().data());
}

std::optional<AEDesc> writeNumber(const AENumber& number, DescType type) {
    const NumberType* row = numberTypeOf(type);
    return row ? row->write(number, type) : std::nullopt;
}

std::optional<std::u16string> readText(const AEDesc& desc) {
    const AEDesc* styled = desc.find("ktxt"_4cc);
    if (desc.isList() || (desc.isRecord() && (!styled || styled->isRecord())))
        return {};
    const AEDesc& plain = styled ? *styled : desc;
    const TextType* row = textTypeOf(plain.type());
    return row ? std::optional(row->read(plain.data())) : std::nullopt;
}

std::optional<AEDesc> writeText(std::u16string_view text, DescType type) {
    const TextType* row = textTypeOf(type);
    return row ? row->write(text, type) : std::nullopt;
}

std::optional<bool> readBoolean(const AEDesc& desc) {
    if (desc.type() != "bool"_4cc)
        return desc.type() == "true"_4cc;
    std::string_view bytes = desc.data();
    return bytes.empty() ? std::nullopt : std::optional(bytes[0] != 0);
}

std::optional<AEDesc> writeBoolean(bool value, DescType type) {
    if (type == "bool"_4cc)
        return AEDesc::ofBoolean(value);
    return type == (value ? "true"_4cc : "fals"_4cc) ? std::optional(AEDesc(type, "")) : std::nullopt;
}

std::optional<std::string> readFile(const AEDesc& desc) {
    std::string_view bytes = desc.data();
    if (bytes.starts_with("/") && bytes.find('\0') == std::string_view::npos)
        return std::string(bytes);
    return pathFromFileURL(bytes);
}

} // namespace quoddle

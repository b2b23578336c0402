// SPDX-License-Identifier: MIT
#include "platform/ae/AECoercion.h"

#include "platform/ae/AEScalars.h"
#include "platform/base/DateText.h"
#include "platform/base/FileURL.h"
#include "platform/base/Text.h"

#include <algorithm>

namespace quoddle {

namespace {

using Coerced = std::optional<AEDesc>;

// The types that a row matches: one type or a family. A record-like descriptor is a Record whatever its type.
enum class Family { Any, Number, Text, Boolean, Code, File, List, Record, Event, Other };

struct Pattern {
    Family family = Family::Any;
    DescType type = 0;
    constexpr Pattern(Family f) : family(f) {}
    constexpr Pattern(DescType t) : type(t) {}
};

struct Row {
    Pattern from;
    Pattern to;
    Coerced (*coerce)(const AEDesc& desc, DescType to);
};

Family familyOfType(DescType type) {
    struct Member {
        bool (*contains)(DescType);
        Family family;
    };
    constexpr Member kMembers[] = {{isTextType, Family::Text},
                                   {isNumberType, Family::Number},
                                   {isBooleanType, Family::Boolean},
                                   {isCodeType, Family::Code},
                                   {isFileType, Family::File}};
    for (const Member& member : kMembers)
        if (member.contains(type))
            return member.family;
    return type == "list"_4cc ? Family::List : type == "aevt"_4cc ? Family::Event : Family::Other;
}

Family familyOf(const AEDesc& desc) {
    Family family = familyOfType(desc.type());
    if (desc.isAppleEvent())
        return Family::Event;
    if (desc.isRecord() && family != Family::Text)
        return Family::Record;
    return family == Family::List && !desc.isList() ? Family::Other : family;
}

bool matches(const Pattern& pattern, DescType type, Family family) {
    return pattern.type ? pattern.type == type : pattern.family == Family::Any || pattern.family == family;
}

Coerced asItIs(const AEDesc& desc, DescType) {
    return desc;
}

Coerced refused(const AEDesc&, DescType) {
    return {};
}

Coerced sameBytes(const AEDesc& desc, DescType to) {
    return desc.withType(to);
}

Coerced fieldsUnderOtherType(const AEDesc& desc, DescType to) {
    return desc.isRecord() ? Coerced(desc.withType(to)) : std::nullopt;
}

Coerced numberToNumber(const AEDesc& desc, DescType to) {
    auto number = readNumber(desc);
    return number ? writeNumber(*number, to) : std::nullopt;
}

Coerced numberToText(const AEDesc& desc, DescType to) {
    auto number = readNumber(desc);
    return number ? writeText(textOfNumber(*number), to) : std::nullopt;
}

Coerced numberToBoolean(const AEDesc& desc, DescType to) {
    auto number = readNumber(desc);
    return number ? writeBoolean(std::visit([](auto value) { return value != 0; }, *number), to) : std::nullopt;
}

Coerced booleanToNumber(const AEDesc& desc, DescType to) {
    auto value = readBoolean(desc);
    return value ? writeNumber(std::int64_t{*value}, to) : std::nullopt;
}

Coerced booleanToText(const AEDesc& desc, DescType to) {
    auto value = readBoolean(desc);
    return value ? writeText(*value ? u"true" : u"false", to) : std::nullopt;
}

Coerced booleanToBoolean(const AEDesc& desc, DescType to) {
    auto value = readBoolean(desc);
    return value ? writeBoolean(*value, to) : std::nullopt;
}

Coerced textToText(const AEDesc& desc, DescType to) {
    auto text = readText(desc);
    return text ? writeText(*text, to) : std::nullopt;
}

Coerced textToNumber(const AEDesc& desc, DescType to) {
    auto text = readText(desc);
    auto number = text ? numberOfText(*text) : std::nullopt;
    return number ? writeNumber(*number, to) : std::nullopt;
}

Coerced textToBoolean(const AEDesc& desc, DescType to) {
    auto text = readText(desc);
    if (!text || text->size() > 5)
        return {};
    for (char16_t& unit : *text)
        unit = unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20) : unit;
    return *text == u"true" || *text == u"false" ? writeBoolean(*text == u"true", to) : std::nullopt;
}

Coerced textToCode(const AEDesc& desc, DescType to) {
    auto text = readText(desc);
    std::string bytes = text ? macRomanFromUTF16(*text) : "";
    return bytes.size() == 4 ? Coerced(AEDesc::ofCode(to, fourCharCode(bytes))) : std::nullopt;
}

Coerced codeToText(const AEDesc& desc, DescType to) {
    return desc.data().size() == 4 ? writeText(utf16FromMacRoman(bytesOf(desc.code())), to) : std::nullopt;
}

Coerced textToFile(const AEDesc& desc, DescType to) {
    auto text = readText(desc);
    auto path = text ? readFile(AEDesc("psxf"_4cc, utf8FromUTF16(*text))) : std::nullopt;
    return path ? Coerced(AEDesc(to, fileURLFromPath(*path))) : std::nullopt;
}

Coerced fileToText(const AEDesc& desc, DescType to) {
    auto path = readFile(desc);
    return path ? writeText(utf16FromUTF8(*path), to) : std::nullopt;
}

Coerced fileToFile(const AEDesc& desc, DescType to) {
    auto path = readFile(desc);
    return path ? Coerced(AEDesc(to, fileURLFromPath(*path))) : std::nullopt;
}

Coerced dateToText(const AEDesc& desc, DescType to) {
    auto seconds = desc.data().size() == sizeof(std::int64_t) ? desc.withType("comp"_4cc).asInt64() : std::nullopt;
    return seconds ? writeText(textOfDate(*seconds), to) : std::nullopt;
}

Coerced textToDate(const AEDesc& desc, DescType) {
    auto text = readText(desc);
    auto seconds = text ? dateOfText(*text, currentSeconds()) : std::nullopt;
    return seconds ? Coerced(AEDesc::ofDate(*seconds)) : std::nullopt;
}

// Unwraps nested lists of one item. A loop instead of recursion, because the nesting may be deep.
Coerced onlyItem(const AEDesc& desc, DescType to) {
    const AEDesc* item = &desc;
    while (item->isList() && item->count() == 1 && item->type() != to)
        item = item->itemAt(1);
    return item->isList() && item->type() != to ? std::nullopt : AECoerced(*item, to);
}

Coerced listOfOne(const AEDesc& desc, DescType) {
    return AEDesc::list({desc});
}

Coerced listOfFields(const AEDesc& desc, DescType) {
    std::vector<AEDesc> values;
    for (const AEItem& field : desc.fields())
        values.push_back(field.value);
    return AEDesc::list(std::move(values));
}

constexpr Row kRows[] = {
    {Family::Any, "****"_4cc, asItIs},
    {"null"_4cc, Family::Any, refused},
    {Family::Any, "null"_4cc, refused},
    {Family::Any, Family::Event, refused},
    {Family::List, Family::Any, onlyItem},
    {Family::Event, "reco"_4cc, fieldsUnderOtherType},
    {Family::Event, Family::Any, refused},
    {"reco"_4cc, Family::List, listOfFields},
    {Family::Any, Family::List, listOfOne},
    {Family::Record, Family::Other, fieldsUnderOtherType},
    {Family::Text, Family::Text, textToText},
    {Family::Text, Family::Number, textToNumber},
    {Family::Text, Family::Boolean, textToBoolean},
    {Family::Text, Family::Code, textToCode},
    {Family::Text, Family::File, textToFile},
    {Family::Text, "ldt "_4cc, textToDate},
    {Family::Text, "reco"_4cc, fieldsUnderOtherType},
    {Family::Number, Family::Number, numberToNumber},
    {Family::Number, Family::Text, numberToText},
    {Family::Number, Family::Boolean, numberToBoolean},
    {Family::Boolean, Family::Boolean, booleanToBoolean},
    {Family::Boolean, Family::Number, booleanToNumber},
    {Family::Boolean, Family::Text, booleanToText},
    {Family::Code, Family::Code, sameBytes},
    {Family::Code, Family::Text, codeToText},
    {Family::File, Family::File, fileToFile},
    {Family::File, Family::Text, fileToText},
    {"ldt "_4cc, Family::Text, dateToText},
};

} // namespace

std::optional<AEDesc> AECoerced(const AEDesc& desc, DescType toType) {
    if (desc.type() == toType)
        return desc;
    Family from = familyOf(desc);
    Family to = familyOfType(toType);
    const Row* row = std::find_if(std::begin(kRows), std::end(kRows),
                                  [&](const Row& r) { return matches(r.from, desc.type(), from) && matches(r.to, toType, to); });
    return row == std::end(kRows) ? std::nullopt : row->coerce(desc, toType);
}

OSStatus AECoerceDesc(const AEDesc& desc, DescType toType, AEDesc& result) {
    std::optional<AEDesc> coerced = AECoerced(desc, toType);
    if (!coerced)
        return errAECoercionFail;
    result = std::move(*coerced);
    return noErr;
}

} // namespace quoddle

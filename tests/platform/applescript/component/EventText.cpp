// SPDX-License-Identifier: MIT
#include "EventText.h"

namespace quoddle {

namespace {

std::string textOfCode(FourCharCode code) {
    std::string text = bytesOf(code);
    while (text.size() > 1 && text.back() == ' ')
        text.pop_back();
    return text;
}

std::string textOfPart(const AEDesc& record, AEKeyword key) {
    const AEDesc* part = record.find(key);
    return part ? textOfDescriptor(*part) : "MISSING";
}

/// A code that must be of one type: "type" for classes, "enum" for forms and operators.
std::string textOfCodePart(const AEDesc& record, AEKeyword key, DescType type) {
    const AEDesc* part = record.find(key);
    return part && part->type() == type ? textOfCode(part->code()) : "WRONG " + textOfPart(record, key);
}

std::string textOfFields(const AEDesc& record) {
    std::string text;
    for (const AEItem& field : record.fields())
        text += (text.empty() ? "" : ", ") + textOfCode(field.key) + ":" + textOfDescriptor(field.value);
    return text;
}

} // namespace

std::string textOfDescriptor(const AEDesc& descriptor) {
    const DescType type = descriptor.type();
    switch (type) {
    case "null"_4cc:
        return "app";
    case "utxt"_4cc:
        return "\"" + descriptor.asUTF8().value_or("?") + "\"";
    case "long"_4cc:
    case "doub"_4cc:
        return descriptor.asUTF8().value_or("?");
    case "bool"_4cc:
        return descriptor.asBoolean() == true ? "true" : "false";
    case "type"_4cc:
    case "enum"_4cc:
    case "abso"_4cc:
        return textOfCode(type) + " " + textOfCode(descriptor.code());
    case "obj "_4cc: {
        const AEDesc* data = descriptor.find("seld"_4cc);
        return textOfCodePart(descriptor, "want"_4cc, "type"_4cc) + ":" + textOfCodePart(descriptor, "form"_4cc, "enum"_4cc) + "(" +
               (data ? textOfDescriptor(*data) : "MISSING") + ") < " + textOfPart(descriptor, "from"_4cc);
    }
    case "rang"_4cc:
        return textOfPart(descriptor, "star"_4cc) + " .. " + textOfPart(descriptor, "stop"_4cc);
    case "insl"_4cc:
        return textOfCodePart(descriptor, "kpos"_4cc, "enum"_4cc) + "@" + textOfPart(descriptor, "kobj"_4cc);
    case "cmpd"_4cc:
        return "[" + textOfPart(descriptor, "obj1"_4cc) + " " + textOfCodePart(descriptor, "relo"_4cc, "enum"_4cc) + " " +
               textOfPart(descriptor, "obj2"_4cc) + "]";
    case "logi"_4cc:
        return textOfCodePart(descriptor, "logc"_4cc, "enum"_4cc) + textOfPart(descriptor, "term"_4cc);
    default:
        break;
    }
    if (descriptor.isList()) {
        std::string text;
        for (const AEDesc& item : descriptor.items())
            text += (text.empty() ? "" : ", ") + textOfDescriptor(item);
        return "{" + text + "}";
    }
    if (descriptor.isRecord())
        return textOfCode(type) + "<" + textOfFields(descriptor) + ">";
    const auto text = descriptor.asUTF8();
    return textOfCode(type) + (descriptor.data().empty() ? "" : " " + text.value_or("?"));
}

std::string textOfEvent(const AEDesc& event) {
    std::string text = textOfCode(event.eventClass()) + "/" + textOfCode(event.eventID());
    for (const AEItem& parameter : event.fields())
        text += " " + textOfCode(parameter.key) + "=" + textOfDescriptor(parameter.value);
    return text;
}

} // namespace quoddle

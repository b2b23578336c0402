// SPDX-License-Identifier: MIT
#include "platform/additions/FileData.h"

#include "platform/additions/Command.h"
#include "platform/ae/AECoercion.h"
#include "platform/ae/AEFlatten.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <bit>

namespace quoddle::additions {

namespace {

struct FixedSize {
    DescType asClass;
    DescType wire;
    std::size_t size;
};

constexpr FixedSize kFixedSizes[] = {
    {"long"_4cc, "long"_4cc, 4}, {"shor"_4cc, "shor"_4cc, 2}, {"comp"_4cc, "comp"_4cc, 8}, {"doub"_4cc, "doub"_4cc, 8},
    {"sing"_4cc, "sing"_4cc, 4}, {"ldt "_4cc, "ldt "_4cc, 8}, {"bool"_4cc, "bool"_4cc, 1}, {"nmbr"_4cc, "doub"_4cc, 8},
};

const FixedSize* fixedSize(DescType asClass) {
    const auto* found =
        std::find_if(std::begin(kFixedSizes), std::end(kFixedSizes), [asClass](const auto& row) { return row.asClass == asClass; });
    return found == std::end(kFixedSizes) ? nullptr : found;
}

/// Reverses the bytes between the byte orders of files and of the machine.
std::string swapped(std::string_view bytes) {
    std::string result(bytes);
    if constexpr (std::endian::native == std::endian::little)
        std::reverse(result.begin(), result.end());
    return result;
}

DescType ownClass(const AEDesc& value) {
    if (isTextClass(value.type()))
        return "TEXT"_4cc;
    const bool isWhole = value.type() == "long"_4cc || value.type() == "shor"_4cc;
    return isWhole ? "long"_4cc : value.type();
}

std::optional<std::string> textBytes(const AEDesc& value, bool wide) {
    const auto text = value.asText();
    if (!text)
        return std::nullopt;
    if (!wide)
        return utf8FromUTF16(*text);
    std::string bytes;
    bytes.reserve(text->size() * 2);
    for (char16_t unit : *text)
        bytes += {static_cast<char>(unit >> 8), static_cast<char>(unit)};
    return bytes;
}

std::optional<std::string> flattened(const AEDesc& value) {
    std::string bytes;
    return AEFlattenDesc(value, bytes) == noErr ? std::optional(bytes) : std::nullopt;
}

} // namespace

bool isWideText(DescType asClass) {
    return asClass == "utxt"_4cc || asClass == "ut16"_4cc || asClass == "sutx"_4cc;
}

std::size_t fixedSizeOf(DescType asClass) {
    const FixedSize* row = fixedSize(asClass);
    return row ? row->size : 0;
}

std::optional<std::string> fileBytesOf(const AEDesc& value, DescType asClass) {
    const DescType wanted = asClass ? asClass : ownClass(value);
    if (isTextClass(wanted))
        return textBytes(value, isWideText(wanted));
    if (const FixedSize* row = fixedSize(wanted)) {
        const auto number = AECoerced(value, row->wire);
        return number ? std::optional(swapped(number->data())) : std::nullopt;
    }
    if (wanted == "list"_4cc || wanted == "reco"_4cc) {
        const auto coerced = AECoerced(value, wanted);
        return coerced ? flattened(*coerced) : std::nullopt;
    }
    if (value.isList() || value.isRecord())
        return flattened(value);
    const bool isBytes = wanted == "rdat"_4cc || wanted == "tdta"_4cc;
    if (isBytes && isTextClass(value.type()))
        return textBytes(value, false);
    return isBytes || wanted == value.type() ? std::optional(std::string(value.data())) : std::nullopt;
}

std::optional<AEDesc> valueOfFileBytes(std::string_view bytes, DescType asClass, std::size_t* used) {
    if (used)
        *used = bytes.size();
    if (!asClass || asClass == "ctxt"_4cc || asClass == "TEXT"_4cc || asClass == "itxt"_4cc || asClass == "STXT"_4cc)
        return AEDesc::ofText(utf16FromSourceBytes(bytes));
    if (asClass == "utf8"_4cc)
        return AEDesc::ofUTF8(bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes);
    if (isWideText(asClass)) {
        const auto text = AEDesc("ut16"_4cc, bytes.substr(0, bytes.size() / 2 * 2)).asText();
        return text ? std::optional(AEDesc::ofText(*text)) : std::nullopt;
    }
    if (const FixedSize* row = fixedSize(asClass)) {
        if (bytes.empty() || bytes.size() % row->size != 0)
            return std::nullopt;
        std::vector<AEDesc> values;
        for (std::size_t at = 0; at < bytes.size(); at += row->size)
            values.push_back(AEDesc(row->wire, swapped(bytes.substr(at, row->size))));
        return values.size() == 1 ? values.front() : AEDesc::list(std::move(values));
    }
    if (asClass == "list"_4cc || asClass == "reco"_4cc) {
        AEDesc value;
        std::size_t length = 0;
        if (AEUnflattenFirstDesc(bytes, value, length) != noErr)
            return std::nullopt;
        if (used)
            *used = length; // bytes of an earlier, longer contents may follow
        return AECoerced(value, asClass);
    }
    return AEDesc(asClass == "tdta"_4cc ? "rdat"_4cc : asClass, bytes);
}

} // namespace quoddle::additions

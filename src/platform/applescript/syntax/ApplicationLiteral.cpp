// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/ApplicationLiteral.h"

#include "platform/applescript/syntax/NodeKind.h"
#include "platform/base/FourCharCode.h"
#include "platform/base/Text.h"

#include <algorithm>

namespace quoddle::syntax {

namespace {

constexpr std::size_t kFlagsAt = 86;
constexpr std::size_t kTypeAt = 90;
constexpr std::size_t kContentAt = 94;
constexpr std::uint32_t kFlags = 0x40020100; // the value for a file without a creator code
constexpr std::size_t kAliasHeader = 150;
constexpr std::size_t kAliasNameAt = 50; // place of a Pascal string of at most 63 bytes
constexpr std::size_t kMaxAliasName = 63;
constexpr int kUnicodeNameTag = 14;
constexpr std::size_t kMaxUnicodeName = 16000; // enough for a path; lengths are stored in 16 bits

void put(std::string& bytes, std::size_t at, std::uint32_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes[at + i] = static_cast<char>(value >> (8 * (size - 1 - i)));
}

std::uint32_t get(std::string_view bytes, std::size_t at, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

std::string bigEndian(std::u16string_view text) {
    std::string bytes(text.size() * 2, '\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        put(bytes, 2 * i, text[i], 2);
    return bytes;
}

std::string aliasRecord(std::u16string_view name) {
    std::string alias(kAliasHeader, '\0');
    put(alias, 6, 2, 2); // version of alias records
    std::string roman = macRomanFromUTF16(name).substr(0, kMaxAliasName);
    alias[kAliasNameAt] = static_cast<char>(roman.size());
    std::ranges::copy(roman, alias.begin() + static_cast<std::ptrdiff_t>(kAliasNameAt + 1));
    name = name.substr(0, kMaxUnicodeName);
    std::string tagged(6, '\0');
    put(tagged, 0, kUnicodeNameTag, 2);
    put(tagged, 2, static_cast<std::uint32_t>(2 + 2 * name.size()), 2);
    put(tagged, 4, static_cast<std::uint32_t>(name.size()), 2);
    alias += tagged + bigEndian(name);
    alias += std::string("\xFF\xFF\0\0", 4);
    put(alias, 4, static_cast<std::uint32_t>(alias.size()), 2);
    return alias;
}

/// The Unicode name in the tagged items, or else the Mac Roman name in the header.
std::u16string aliasName(std::string_view alias) {
    for (std::size_t at = kAliasHeader; at + 4 <= alias.size();) {
        std::uint32_t tag = get(alias, at, 2);
        std::size_t length = get(alias, at + 2, 2);
        at += 4;
        if (tag == 0xFFFF || at + length > alias.size())
            break;
        if (tag == kUnicodeNameTag && length >= 2) {
            std::u16string name;
            for (std::size_t i = 0, n = std::min<std::size_t>(get(alias, at, 2), (length - 2) / 2); i < n; ++i)
                name += static_cast<char16_t>(get(alias, at + 2 + 2 * i, 2));
            return name;
        }
        at += length + length % 2;
    }
    if (alias.size() <= kAliasNameAt)
        return {};
    return utf16FromMacRoman(
        alias.substr(kAliasNameAt + 1, std::min<std::size_t>(static_cast<unsigned char>(alias[kAliasNameAt]), kMaxAliasName)));
}

bool isURL(std::u16string_view name) {
    return name.find(u"://") != std::u16string_view::npos;
}

} // namespace

std::string applicationData(std::u16string_view name) {
    std::string data(kContentAt, '\0');
    put(data, kFlagsAt, kFlags, 4);
    if (isURL(name)) {
        put(data, kTypeAt, "aprl"_4cc, 4);
        return data + utf8FromUTF16(name);
    }
    put(data, kTypeAt, "alis"_4cc, 4);
    return data + aliasRecord(std::u16string(name) + u".app");
}

std::u16string applicationName(std::string_view data) {
    if (data.size() < kContentAt)
        return {};
    FourCharCode type = get(data, kTypeAt, 4);
    if (type == "aprl"_4cc)
        return utf16FromUTF8(data.substr(kContentAt));
    std::u16string name = type == "alis"_4cc ? aliasName(data.substr(kContentAt)) : std::u16string();
    if (name.ends_with(u".app"))
        name.erase(name.size() - 4);
    return name;
}

std::optional<ApplicationName> applicationOf(const Object* target) {
    auto is = [&target](NodeKind kind) { return target->isNode(tagOf(kind)); };
    while (is(NodeKind::Line) || is(NodeKind::Of))
        target = target->children[is(NodeKind::Line) ? 0 : 1];
    if (is(NodeKind::Literal))
        target = target->children[0];
    if (target->kind == ObjectKind::Data && target->tag == kApplicationTag)
        return ApplicationName{applicationName(target->bytes), false};
    bool byKey = is(NodeKind::ElementByKey);
    if ((!is(NodeKind::Element) && !byKey) || target->children.size() < 2 || target->children[0]->code() != "capp"_4cc)
        return std::nullopt;
    const Object* name = target->children[1];
    bool known = name->isNode(tagOf(NodeKind::Literal)) && name->children[0]->kind == ObjectKind::Text;
    return ApplicationName{known ? std::u16string(name->children[0]->text) : std::u16string(), byKey};
}

} // namespace quoddle::syntax

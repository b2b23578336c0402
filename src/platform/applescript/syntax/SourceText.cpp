// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/SourceText.h"

#include "platform/base/Text.h"

#include <algorithm>
#include <cstdlib>
#include <unicode/uchar.h>

namespace quoddle::syntax::sourcetext {

namespace {

std::u16string widen(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

bool isMacRomanLetter(char16_t c) {
    if (c < 0x80)
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return u_isalpha(c) && macRomanFromUTF16(std::u16string_view(&c, 1)) != "?";
}

} // namespace

std::u16string quoted(std::u16string_view text) {
    std::u16string out;
    out.reserve(text.size() + 2);
    out += u'"';
    for (char16_t c : text) {
        if (c == '"' || c == '\\')
            out += u'\\';
        out += c;
    }
    out += u'"';
    return out;
}

std::u16string integer(std::int64_t value) {
    return widen(std::to_string(value));
}

std::u16string ordinal(std::int64_t value) {
    std::int64_t last = std::abs(value) % 100;
    bool teen = last >= 11 && last <= 13;
    std::u16string_view suffix = teen ? u"th" : last % 10 == 1 ? u"st" : last % 10 == 2 ? u"nd" : last % 10 == 3 ? u"rd" : u"th";
    return integer(value).append(suffix);
}

bool isPlainIdentifier(std::u16string_view name) {
    auto continues = [](char16_t c) { return c == '_' || (c >= '0' && c <= '9') || isMacRomanLetter(c); };
    return !name.empty() && (name[0] == '_' || isMacRomanLetter(name[0])) && std::ranges::all_of(name, continues);
}

std::u16string nameText(std::string_view bytes) {
    return isValidUTF8(bytes) ? utf16FromUTF8(bytes) : utf16FromMacRoman(bytes);
}

std::u16string identifier(std::string_view key, std::string_view spelling, bool barred) {
    std::u16string name = nameText(spelling.empty() ? key : spelling);
    // A key with capitals was written in bars and keeps them; without bars the case would not count.
    bool caseMatters = std::ranges::any_of(key, [](char c) { return c >= 'A' && c <= 'Z'; });
    if (!barred && !caseMatters && isPlainIdentifier(name))
        return name;
    std::u16string out = u"|";
    for (char16_t c : name) {
        if (c == '|' || c == '\\')
            out += u'\\';
        out += c;
    }
    return out += u'|';
}

std::u16string rawCode(std::u16string_view kind, std::string_view bytes) {
    return (u"«" + std::u16string(kind)) + u" " + utf16FromMacRoman(bytes) + u"»";
}

std::u16string rawData(std::string_view typeAndBytes) {
    constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
    std::u16string out = u"«data " + utf16FromMacRoman(typeAndBytes.substr(0, 4));
    for (char c : typeAndBytes.substr(std::min<std::size_t>(4, typeAndBytes.size()))) {
        auto byte = static_cast<unsigned char>(c);
        out += kDigits[byte >> 4];
        out += kDigits[byte & 15];
    }
    return out += u"»";
}

} // namespace quoddle::syntax::sourcetext

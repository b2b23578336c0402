// SPDX-License-Identifier: MIT
#include "JsonText.h"

#include "platform/base/Text.h"

namespace quoddle::tool {

std::string inJSON(const std::string& text) {
    std::string out = "\"";
    for (char c : utf8FromUTF16(utf16FromUTF8(text))) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\')
            out += '\\';
        if (code >= 0x20)
            out += c;
        else
            out += std::string("\\u00") + "0123456789abcdef"[code >> 4] + "0123456789abcdef"[code & 0xF];
    }
    return out + "\"";
}

} // namespace quoddle::tool

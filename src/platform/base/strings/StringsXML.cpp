// SPDX-License-Identifier: MIT
// Reads strings tables that are property lists in XML: the keys and texts of the outermost dictionary. Supports only the parts of XML that
// such lists use: elements, comments, CDATA, the five predefined entities and numeric characters. A document type is skipped, and its
// declarations have no effect.
#include "platform/base/strings/StringsReaders.h"

#include <algorithm>
#include <utility>

#include <unicode/utf16.h>

namespace quoddle {

namespace {

class XMLReader {
public:
    explicit XMLReader(std::u16string_view text) : mRest(text) {}

    StringsTable read() {
        std::u16string key;
        bool hasKey = false;
        std::size_t depth = 0; // the nesting of dictionaries and lists; 1 in the table itself
        while (mTable.error.empty() && nextTag()) {
            if (mName == u"/dict" || mName == u"/array") {
                if (depth == 0 || --depth == 0)
                    break;
            } else if (mName == u"dict" || mName == u"array") {
                if (depth == 0 && mName == u"array")
                    break;
                depth += !mIsEmpty;
                hasKey = false; // the value for the last key was no text and has been skipped
            } else if (depth == 1 && mName == u"key") {
                key = content();
                hasKey = true;
            } else if (depth == 1 && mName == u"string") {
                std::u16string text = content();
                if (hasKey && mTable.error.empty())
                    mTable.texts.insert_or_assign(std::exchange(key, {}), std::move(text));
                hasKey = false;
            }
            mHasTable |= depth > 0 || mName == u"dict";
        }
        if (mTable.error.empty() && (!mHasTable || depth > 0))
            mTable.error = mHasTable ? "the XML ends too early" : "not a table of strings";
        return std::move(mTable);
    }

private:
    /// Moves behind the next tag that begins or ends an element. False at the end of the text.
    bool nextTag() {
        while (true) {
            const std::size_t start = mRest.find(u'<');
            if (start == std::u16string_view::npos)
                return false;
            mRest.remove_prefix(start + 1);
            if (mRest.starts_with(u"!--")) {
                if (!passOver(u"-->"))
                    return false;
            } else if (mRest.starts_with(u"![CDATA[")) {
                if (!passOver(u"]]>"))
                    return false;
            } else if (mRest.starts_with(u'?')) {
                if (!passOver(u"?>"))
                    return false;
            } else if (mRest.starts_with(u'!')) {
                // A document type may have declarations in brackets.
                const std::size_t end = mRest.find_first_of(u">[");
                if (end == std::u16string_view::npos || !passOver(mRest[end] == u'[' ? u"]" : u">"))
                    return false;
            } else {
                return readTag();
            }
        }
    }
    bool passOver(std::u16string_view mark) {
        const std::size_t end = mRest.find(mark);
        mRest.remove_prefix(end == std::u16string_view::npos ? mRest.size() : end + mark.size());
        return end != std::u16string_view::npos;
    }
    bool readTag() {
        const std::size_t end = mRest.find(u'>');
        if (end == std::u16string_view::npos)
            return false;
        const std::u16string_view tag = mRest.substr(0, end);
        mRest.remove_prefix(end + 1);
        mIsEmpty = tag.ends_with(u'/');
        mName = tag.substr(0, tag.find_first_of(mIsEmpty ? u" \t\r\n/" : u" \t\r\n", 1));
        return true;
    }

    /// Reads the content of a text element, including the end tag.
    std::u16string content() {
        std::u16string text;
        while (!mIsEmpty) {
            const std::size_t mark = mRest.find_first_of(u"<&");
            text += mRest.substr(0, mark);
            mRest.remove_prefix(std::min(mark, mRest.size()));
            if (mRest.starts_with(u"<![CDATA[")) {
                mRest.remove_prefix(9);
                const std::size_t end = std::min(mRest.find(u"]]>"), mRest.size());
                text += mRest.substr(0, end);
                mRest.remove_prefix(std::min(end + 3, mRest.size()));
            } else if (mRest.starts_with(u"<!--")) {
                passOver(u"-->");
            } else if (mRest.starts_with(u'&')) {
                appendEntity(text);
            } else {
                const std::u16string_view element = mName;
                if (!nextTag() || mName.substr(0, 1) != u"/" || mName.substr(1) != element)
                    mTable.error = "an element of text without an end";
                break;
            }
        }
        return text;
    }
    void appendEntity(std::u16string& text) {
        constexpr struct {
            std::u16string_view name;
            char16_t meaning;
        } kEntities[] = {{u"&lt;", u'<'}, {u"&gt;", u'>'}, {u"&amp;", u'&'}, {u"&quot;", u'"'}, {u"&apos;", u'\''}};
        for (const auto& entity : kEntities)
            if (mRest.starts_with(entity.name)) {
                text += entity.meaning;
                mRest.remove_prefix(entity.name.size());
                return;
            }
        const std::size_t end = mRest.substr(0, 12).find(u';');
        const bool isNumber = mRest.starts_with(u"&#") && end != std::u16string_view::npos;
        const bool isHexadecimal = isNumber && mRest[2] == u'x';
        char32_t code = 0;
        for (std::size_t i = isHexadecimal ? 3 : 2; isNumber && i < end; ++i) {
            const char16_t digit = mRest[i] | 0x20; // a letter in lower case; digits are unchanged
            const int value = mRest[i] >= u'0' && mRest[i] <= u'9' ? mRest[i] - u'0'
                              : digit >= u'a' && digit <= u'f'     ? digit - u'a' + 10
                                                                   : 99;
            code = value < (isHexadecimal ? 16 : 10) ? code * (isHexadecimal ? 16 : 10) + static_cast<char32_t>(value) : 0x110000;
            if (code > 0x10FFFF)
                break;
        }
        if (code == 0 || code > 0x10FFFF || U_IS_SURROGATE(code)) {
            mTable.error = "an unknown entity";
            mRest = {};
            return;
        }
        if (code >= 0x10000)
            text += {U16_LEAD(code), U16_TRAIL(code)};
        else
            text += static_cast<char16_t>(code);
        mRest.remove_prefix(end + 1);
    }

    std::u16string_view mRest;
    std::u16string_view mName; // the name of the last tag, with "/" in front when it ends an element
    bool mIsEmpty = false;     // whether the last tag is an element without content
    bool mHasTable = false;
    StringsTable mTable;
};

} // namespace

StringsTable readXMLStrings(std::u16string_view text) {
    return XMLReader(text).read();
}

} // namespace quoddle

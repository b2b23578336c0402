// SPDX-License-Identifier: MIT
// Chooses the reader for a strings table, and reads the text form.
#include "platform/base/strings/StringsFile.h"

#include "platform/base/SourceEncoding.h"
#include "platform/base/strings/OpenStepScanner.h"
#include "platform/base/strings/StringsReaders.h"
#include "platform/base/Text.h"

#include <algorithm>

#include <unicode/ucnv.h>

namespace quoddle {

namespace {

/// The name of the UTF-16 or UTF-32 encoding of the bytes, told by the byte-order mark, or for UTF-16 also by a zero byte in the first
/// character. Null for all other encodings.
const char* wideEncodingOf(std::string_view bytes) {
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t length = 0;
    const char* marked = ucnv_detectUnicodeSignature(bytes.data(), static_cast<std::int32_t>(bytes.size()), &length, &status);
    if (marked && std::string_view(marked) != "UTF-8")
        return marked;
    if (bytes.size() < 2 || bytes.size() % 2 != 0 || (bytes[0] == '\0') == (bytes[1] == '\0'))
        return nullptr;
    return bytes[0] == '\0' ? "UTF-16BE" : "UTF-16LE";
}

std::u16string decoded(std::string_view bytes) {
    const char* encoding = wideEncodingOf(bytes);
    if (!encoding)
        return utf16FromSourceBytes(bytes);
    UErrorCode status = U_ZERO_ERROR;
    UConverter* converter = ucnv_open(encoding, &status);
    std::u16string text(bytes.size(), u'\0');
    const std::int32_t length = ucnv_toUChars(converter, text.data(), static_cast<std::int32_t>(text.size()), bytes.data(),
                                              static_cast<std::int32_t>(bytes.size()), &status);
    ucnv_close(converter);
    text.resize(U_FAILURE(status) ? 0 : static_cast<std::size_t>(length));
    return text;
}

bool looksLikeXML(std::u16string_view text) {
    const auto start = std::find_if_not(text.begin(), text.end(), OpenStepScanner::isBlank);
    const std::u16string_view rest = text.substr(static_cast<std::size_t>(start - text.begin()));
    return rest.starts_with(u"<?xml") || rest.starts_with(u"<!") || rest.starts_with(u"<plist");
}

class TextReader {
public:
    explicit TextReader(std::u16string_view text) : mScanner(text) {}

    StringsTable read() {
        while (mTable.error.empty() && skipBlanks() && !mScanner.atEnd() && !(mInBraces && mScanner.peek() == u'}')) {
            if (mScanner.peek() == u'{' && !mInBraces && mTable.texts.empty()) {
                mInBraces = true;
                mScanner.advance();
            } else {
                readEntry();
            }
        }
        return std::move(mTable);
    }

private:
    bool skipBlanks() {
        if (!mScanner.skipBlanks())
            fail("a comment without an end");
        return mTable.error.empty();
    }
    void fail(const std::string& what) { mTable.error = mScanner.sentence(what); }

    /// Reads "key = value;", or "key;" for "key = key;". The last semicolon may be missing before a closing brace.
    void readEntry() {
        auto key = mScanner.readText();
        if (!key) {
            mTable.error = key.error();
            return;
        }
        std::u16string text = *key;
        bool isText = true;
        if (skipBlanks() && mScanner.peek() == u'=') {
            mScanner.advance();
            isText = skipBlanks() && readValue(text);
            if (mTable.error.empty())
                (void)skipBlanks();
        }
        if (!mTable.error.empty())
            return;
        const bool isLast = mInBraces && mScanner.peek() == u'}';
        if (mScanner.peek() != u';' && !isLast)
            return fail("no semicolon after the value of \"" + utf8FromUTF16(std::u16string_view(*key).substr(0, 80)) + "\"");
        if (!isLast)
            mScanner.advance();
        if (isText)
            mTable.texts.insert_or_assign(std::move(*key), std::move(text));
    }

    /// Reads a value. False when it is no text; such a value is skipped.
    bool readValue(std::u16string& text) {
        if (std::u16string_view(u"{(<").find(mScanner.peek()) != std::u16string_view::npos) {
            passOver();
            return false;
        }
        auto read = mScanner.readText();
        if (!read)
            mTable.error = read.error();
        else
            text = std::move(*read);
        return bool(read);
    }

    /// Skips a dictionary, a list or data up to its closing bracket.
    void passOver() {
        std::size_t depth = 0;
        do {
            const char16_t c = mScanner.peek();
            if (c == u'"' || c == u'\'') {
                if (auto text = mScanner.readText(); !text)
                    mTable.error = text.error();
                continue;
            }
            depth += std::u16string_view(u"{(<").find(c) != std::u16string_view::npos;
            depth -= std::u16string_view(u"})>").find(c) != std::u16string_view::npos;
            mScanner.advance();
        } while (depth > 0 && mTable.error.empty() && skipBlanks() && !mScanner.atEnd());
        if (depth > 0 && mTable.error.empty())
            fail("it ends too early");
    }

    OpenStepScanner mScanner;
    StringsTable mTable;
    bool mInBraces = false;
};

} // namespace

StringsTable readTextStrings(std::u16string_view text) {
    return TextReader(text).read();
}

StringsTable readStrings(std::string_view bytes) {
    if (bytes.size() > kLargestStringsFile)
        return {{}, "too large: more than " + std::to_string(kLargestStringsFile) + " bytes"};
    if (bytes.starts_with("bplist"))
        return readBinaryStrings(bytes);
    const std::u16string text = decoded(bytes);
    return looksLikeXML(text) ? readXMLStrings(text) : readTextStrings(text);
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Property lists in the OpenStep text form and its sister, the strings table: the same without the outer braces.
// Every scalar is a text or data; the form has no numbers.
#include "platform/foundation/PlistReaders.h"

namespace quoddle::Plist {

using namespace Qt::StringLiterals;

namespace {

// Octal escapes name characters of the NeXTSTEP encoding; its upper half, 0x80 to 0xFF (the last two are unused).
constexpr QStringView kNeXTUpper = u"\u00A0ÀÁÂÃÄÅÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖÙÚÛÜÝÞµ×÷©¡¢£⁄¥ƒ§¤’“«‹›ﬁﬂ®–†‡·¦¶•‚„”»…‰¬¿"
                                   u"¹ˋ´ˆ˜¯˘˙¨²˚¸³˝˛ˇ—±¼½¾àáâãäåçèéêëìÆíªîïðñŁØŒºòóôõöæùúûıüýłøœßþÿ\uFFFD\uFFFD";
static_assert(kNeXTUpper.size() == 128);

bool isBareCharacter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'_' || c == u'$' || c == u'/' ||
           c == u':' || c == u'.' || c == u'-';
}

int digitOf(char16_t c) {
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10;
    return 99;
}

class OpenStepReader {
public:
    explicit OpenStepReader(QStringView text) : mText(text) {}

    Value readDocument(OpenStepForm form) {
        if (!skipBlanks())
            return broken(u"a comment without an end"_s);
        if (atEnd())
            return form == OpenStepForm::strings ? Value(QVariant(QVariantMap())) : Value(broken(u"nothing in it"_s));
        const qsizetype start = mAt;
        Value value = readValue(0);
        if (!value)
            return value;
        if (!skipBlanks())
            return broken(u"a comment without an end"_s);
        if (atEnd())
            return value;
        if (value->typeId() == QMetaType::QString && (peek() == u'=' || peek() == u';')) {
            mAt = start; // a strings table: read its first key again as one
            return readEntries(0, false);
        }
        return broken(u"something after the value"_s);
    }

private:
    bool atEnd() const { return mAt >= mText.size(); }
    char16_t peek() const { return atEnd() ? u'\0' : mText[mAt].unicode(); }
    char16_t peekNext() const { return mAt + 1 < mText.size() ? mText[mAt + 1].unicode() : u'\0'; }

    Failure<QString> broken(const QString& what) const { return failure(u"line %1: %2"_s.arg(mText.left(mAt).count(u'\n') + 1).arg(what)); }

    /// False when a comment has no end.
    bool skipBlanks() {
        for (; !atEnd(); ++mAt) {
            if (peek() == u'/' && peekNext() == u'/') {
                while (!atEnd() && peek() != u'\n' && peek() != u'\r' && peek() != u'\u2028')
                    ++mAt;
                --mAt;
            } else if (peek() == u'/' && peekNext() == u'*') {
                const qsizetype end = mText.indexOf("*/"_L1, mAt + 2);
                if (end < 0)
                    return false;
                mAt = end + 1;
            } else if (!mText[mAt].isSpace() && peek() != u'\uFEFF') {
                break;
            }
        }
        return true;
    }

    Value readValue(int depth) {
        if (depth >= kMaxDepth)
            return tooDeep();
        if (++mNodes > kMaxNodes)
            return tooMany();
        if (!skipBlanks())
            return broken(u"a comment without an end"_s);
        switch (peek()) {
        case u'{':
            ++mAt;
            return readEntries(depth, true);
        case u'(':
            ++mAt;
            return readArray(depth);
        case u'<':
            ++mAt;
            return readData();
        default:
            return readText();
        }
    }

    /// "key = value;" pairs up to the closing brace, or to the end of the text. "key;" stands for "key = key;".
    Value readEntries(int depth, bool braces) {
        QVariantMap map;
        for (;;) {
            if (!skipBlanks())
                return broken(u"a comment without an end"_s);
            if (atEnd() && !braces)
                return QVariant(map);
            if (braces && peek() == u'}') {
                ++mAt;
                return QVariant(map);
            }
            const Value key = readText();
            if (!key)
                return key;
            Value value = key;
            if (!skipBlanks())
                return broken(u"a comment without an end"_s);
            if (peek() == u'=') {
                ++mAt;
                value = readValue(depth + 1);
                if (!value || !skipBlanks())
                    return value ? Value(broken(u"a comment without an end"_s)) : value;
            }
            const bool last = braces && peek() == u'}'; // the last semicolon may be missing before the brace
            if (peek() != u';' && !last)
                return broken(u"no semicolon after the value of \"%1\""_s.arg(key->toString().left(80)));
            if (!last)
                ++mAt;
            map.insert(key->toString(), *value);
        }
    }

    Value readArray(int depth) {
        QVariantList list;
        for (;;) {
            if (!skipBlanks())
                return broken(u"a comment without an end"_s);
            if (peek() == u')') {
                ++mAt;
                return QVariant(list);
            }
            Value item = readValue(depth + 1);
            if (!item || !skipBlanks())
                return item ? Value(broken(u"a comment without an end"_s)) : item;
            list.append(*item);
            if (peek() == u',')
                ++mAt;
            else if (peek() != u')')
                return broken(u"no comma or parenthesis after an item"_s);
        }
    }

    Value readData() {
        QByteArray digits;
        for (; !atEnd() && peek() != u'>'; ++mAt) {
            if (digitOf(peek()) < 16)
                digits += static_cast<char>(peek());
            else if (!mText[mAt].isSpace())
                return broken(u"bad data"_s);
        }
        if (atEnd() || digits.size() % 2)
            return broken(u"bad data"_s);
        ++mAt;
        return QVariant(QByteArray::fromHex(digits));
    }

    Value readText() {
        if (peek() == u'"' || peek() == u'\'')
            return readQuoted();
        const qsizetype start = mAt;
        while (!atEnd() && isBareCharacter(peek()))
            ++mAt;
        if (mAt == start)
            return broken(atEnd() ? u"it ends too early"_s : u"\"%1\" where a value belongs"_s.arg(mText[mAt]));
        return QVariant(mText.mid(start, mAt - start).toString());
    }

    Value readQuoted() {
        const char16_t quote = peek();
        const qsizetype start = mAt++;
        QString text;
        while (!atEnd() && peek() != quote) {
            if (peek() == u'\\') {
                ++mAt;
                text += readEscape();
            } else {
                text += mText[mAt++];
            }
        }
        if (atEnd()) {
            mAt = start;
            return broken(u"a text without an end"_s);
        }
        ++mAt;
        return QVariant(text);
    }

    /// After the backslash. An unknown escape stands for its own character.
    QChar readEscape() {
        if (atEnd())
            return u'\\';
        const char16_t c = mText[mAt++].unicode();
        if (digitOf(c) < 8) {
            const int code = readDigits(c - u'0', 8, 2) & 0xFF;
            return code < 0x80 ? QChar(code) : kNeXTUpper[code - 0x80];
        }
        if (c == u'U' || c == u'u')
            return digitOf(peek()) < 16 ? QChar(static_cast<char16_t>(readDigits(0, 16, 4))) : QChar(c);
        constexpr QStringView kNames = u"abfnrtv";
        constexpr QStringView kMeanings = u"\a\b\f\n\r\t\v";
        const qsizetype index = kNames.indexOf(QChar(c));
        return index < 0 ? QChar(c) : kMeanings[index];
    }

    int readDigits(int number, int base, int atMost) {
        for (; atMost > 0 && digitOf(peek()) < base && !atEnd(); --atMost)
            number = number * base + digitOf(mText[mAt++].unicode());
        return number;
    }

    QStringView mText;
    qsizetype mAt = 0;
    qsizetype mNodes = 0;
};

} // namespace

Value readOpenStep(const QString& text, OpenStepForm form) {
    return OpenStepReader(text).readDocument(form);
}

} // namespace quoddle::Plist

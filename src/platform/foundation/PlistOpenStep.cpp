// SPDX-License-Identifier: MIT
// Property lists in the OpenStep text form, and strings tables, which have the same form without the outer braces. Every scalar is a text
// or data; the form has no numbers.
#include "platform/base/strings/OpenStepScanner.h"
#include "platform/base/TextArgument.h"
#include "platform/foundation/PlistReaders.h"

namespace quoddle::Plist {

using namespace Qt::StringLiterals;

namespace {

class OpenStepReader {
public:
    explicit OpenStepReader(const QString& text) : mScanner(TextArgument(text).view()) {}

    Value readDocument() {
        if (!mScanner.skipBlanks())
            return brokenComment();
        if (mScanner.atEnd())
            return broken(u"nothing in it"_s);
        const std::size_t start = mScanner.position();
        Value value = readValue(0);
        if (!value)
            return value;
        if (!mScanner.skipBlanks())
            return brokenComment();
        if (mScanner.atEnd())
            return value;
        if (value->typeId() == QMetaType::QString && (mScanner.peek() == u'=' || mScanner.peek() == u';')) {
            mScanner.setPosition(start); // the value was the first key of a strings table, so read it again as one
            return readEntries(0, false);
        }
        return broken(u"something after the value"_s);
    }

private:
    Failure<QString> broken(const QString& what) const { return failure(QString::fromStdString(mScanner.sentence(what.toStdString()))); }
    Failure<QString> brokenComment() const { return broken(u"a comment without an end"_s); }

    Value readValue(int depth) {
        if (depth >= kMaxDepth)
            return tooDeep();
        if (++mNodes > kMaxNodes)
            return tooMany();
        if (!mScanner.skipBlanks())
            return brokenComment();
        switch (mScanner.peek()) {
        case u'{':
            mScanner.advance();
            return readEntries(depth, true);
        case u'(':
            mScanner.advance();
            return readArray(depth);
        case u'<':
            mScanner.advance();
            return readData();
        default:
            return readText();
        }
    }

    /// Reads "key = value;" pairs up to the closing brace, or to the end of the text without `braces`. "key;" stands for "key = key;".
    Value readEntries(int depth, bool braces) {
        QVariantMap map;
        for (;;) {
            if (!mScanner.skipBlanks())
                return brokenComment();
            if (mScanner.atEnd() && !braces)
                return QVariant(map);
            if (braces && mScanner.peek() == u'}') {
                mScanner.advance();
                return QVariant(map);
            }
            const Value key = readText();
            if (!key)
                return key;
            Value value = key;
            if (!mScanner.skipBlanks())
                return brokenComment();
            if (mScanner.peek() == u'=') {
                mScanner.advance();
                value = readValue(depth + 1);
                if (!value || !mScanner.skipBlanks())
                    return value ? Value(brokenComment()) : value;
            }
            const bool last = braces && mScanner.peek() == u'}'; // the last semicolon may be missing in front of the brace
            if (mScanner.peek() != u';' && !last)
                return broken(u"no semicolon after the value of \"%1\""_s.arg(key->toString().left(80)));
            if (!last)
                mScanner.advance();
            map.insert(key->toString(), *value);
        }
    }

    Value readArray(int depth) {
        QVariantList list;
        for (;;) {
            if (!mScanner.skipBlanks())
                return brokenComment();
            if (mScanner.peek() == u')') {
                mScanner.advance();
                return QVariant(list);
            }
            Value item = readValue(depth + 1);
            if (!item || !mScanner.skipBlanks())
                return item ? Value(brokenComment()) : item;
            list.append(*item);
            if (mScanner.peek() == u',')
                mScanner.advance();
            else if (mScanner.peek() != u')')
                return broken(u"no comma or parenthesis after an item"_s);
        }
    }

    Value readData() {
        QByteArray digits;
        for (; !mScanner.atEnd() && mScanner.peek() != u'>'; mScanner.advance()) {
            if (OpenStepScanner::digitOf(mScanner.peek()) < 16)
                digits += static_cast<char>(mScanner.peek());
            else if (!OpenStepScanner::isBlank(mScanner.peek()))
                return broken(u"bad data"_s);
        }
        if (mScanner.atEnd() || digits.size() % 2)
            return broken(u"bad data"_s);
        mScanner.advance();
        return QVariant(QByteArray::fromHex(digits));
    }

    Value readText() {
        const auto text = mScanner.readText();
        return text ? Value(QVariant(QString::fromStdU16String(*text))) : Value(failure(QString::fromStdString(text.error())));
    }

    OpenStepScanner mScanner;
    qsizetype mNodes = 0;
};

} // namespace

Value readOpenStep(const QString& text) {
    return OpenStepReader(text).readDocument();
}

} // namespace quoddle::Plist

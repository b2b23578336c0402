// SPDX-License-Identifier: MIT
#include "platform/updater/VersionOrder.h"

#include <QString>

namespace quoddle {

namespace {

enum class Kind { end, word, number };

struct Piece {
    Kind kind = Kind::end;
    QStringView text; // numbers have no leading zeros
};

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

/// Takes the next number or word from the front. Separators are dropped.
Piece takePiece(QStringView& version) {
    while (!version.isEmpty() && !version.front().isLetterOrNumber())
        version = version.mid(1);
    if (version.isEmpty())
        return {};
    const bool isNumber = isDigit(version.front());
    qsizetype length = 0;
    while (length < version.size() &&
           (isNumber ? isDigit(version[length]) : version[length].isLetterOrNumber() && !isDigit(version[length])))
        ++length;
    QStringView text = version.left(length);
    version = version.mid(length);
    while (isNumber && text.startsWith(u'0'))
        text = text.mid(1);
    return {isNumber ? Kind::number : Kind::word, text};
}

std::weak_ordering orderOfNumbers(QStringView one, QStringView other) {
    if (one.size() != other.size())
        return one.size() <=> other.size();
    return one.compare(other) <=> 0;
}

/// The end of a version comes before a further number and after a further word.
std::weak_ordering pieceOrder(const Piece& one, const Piece& other) {
    if (one.kind == Kind::word && other.kind == Kind::word)
        return one.text.compare(other.text, Qt::CaseInsensitive) <=> 0;
    if (one.kind == Kind::word)
        return std::weak_ordering::less;
    if (other.kind == Kind::word)
        return std::weak_ordering::greater;
    return orderOfNumbers(one.text, other.text);
}

QStringView withoutOrnaments(QStringView version) {
    const qsizetype plus = version.indexOf(u'+');
    if (plus >= 0)
        version = version.left(plus);
    const bool hasPrefix = version.size() > 1 && version[0].toLower() == u'v' && isDigit(version[1]);
    return hasPrefix ? version.mid(1) : version;
}

} // namespace

std::weak_ordering versionOrder(QStringView one, QStringView other) {
    one = withoutOrnaments(one);
    other = withoutOrnaments(other);
    while (true) {
        const Piece first = takePiece(one), second = takePiece(other);
        if (const auto order = pieceOrder(first, second); order != 0)
            return order;
        if (first.kind == Kind::end && second.kind == Kind::end)
            return std::weak_ordering::equivalent;
    }
}

} // namespace quoddle

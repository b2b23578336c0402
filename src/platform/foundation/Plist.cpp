// SPDX-License-Identifier: MIT
// Chooses the reader for a property list and deals with files and text encodings.
#include "platform/foundation/Plist.h"

#include "platform/base/SourceEncoding.h"
#include "platform/base/strings/StringsFile.h"
#include "platform/base/Text.h"
#include "platform/foundation/FileBytes.h"
#include "platform/foundation/PlistReaders.h"

#include <QStringConverter>

namespace quoddle::Plist {

using namespace Qt::StringLiterals;

namespace {

/// The encoding of text in UTF-16 or UTF-32, told by the byte-order mark, or for UTF-16 also by the zero byte of the first character.
/// nullopt for other encodings.
std::optional<QStringConverter::Encoding> wideEncodingOf(const QByteArray& bytes) {
    const auto byMark = QStringConverter::encodingForData(bytes);
    if (byMark && *byMark != QStringConverter::Utf8)
        return byMark;
    if (bytes.size() >= 2 && bytes.size() % 2 == 0) {
        if (bytes[0] == '\0' && bytes[1] != '\0')
            return QStringConverter::Utf16BE;
        if (bytes[0] != '\0' && bytes[1] == '\0')
            return QStringConverter::Utf16LE;
    }
    return std::nullopt;
}

Result<QString, QString> decodedText(const QByteArray& bytes) {
    if (const auto wide = wideEncodingOf(bytes)) {
        QStringDecoder decoder(*wide);
        QString text = decoder(bytes);
        if (decoder.hasError() || !text.isValidUtf16())
            return failure(u"broken %1 text"_s.arg(QLatin1StringView(QStringConverter::nameForEncoding(*wide))));
        return text;
    }
    const std::u16string text = utf16FromSourceBytes({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

bool looksLikeXML(QStringView text) {
    const QStringView start = text.trimmed().left(9);
    return start.startsWith("<?xml"_L1) || start.startsWith("<!"_L1) || start.startsWith("<plist"_L1);
}

Value readText(const QByteArray& bytes) {
    // The XML reader gets the bytes, because XML names its own encoding. UTF-16 and UTF-32 are decoded before, as no declaration can be
    // read in them.
    if (!wideEncodingOf(bytes) && looksLikeXML(QString::fromLatin1(bytes.left(512)).remove("\xEF\xBB\xBF"_L1)))
        return readXML(bytes);
    auto text = decodedText(bytes);
    if (!text)
        return failure(text.error());
    if (looksLikeXML(*text))
        return readXML(*text);
    return readOpenStep(*text);
}

} // namespace

Result<QVariant, QString> read(const QByteArray& bytes) {
    if (bytes.size() > kMaxBytes)
        return failure(u"too large: more than %1 bytes"_s.arg(kMaxBytes));
    return bytes.startsWith("bplist") ? readBinary(bytes) : readText(bytes);
}

Result<QByteArray, QString> bytesOf(const QString& path) {
    auto bytes = bytesOfFile(path, kMaxBytes);
    if (bytes)
        return std::move(*bytes);
    if (bytes.error() == paramErr)
        return failure(u"not a file"_s);
    return failure(u"error %1"_s.arg(bytes.error()));
}

Result<QVariant, QString> readFile(const QString& path) {
    auto bytes = bytesOf(path);
    if (!bytes)
        return failure(bytes.error());
    return read(*bytes);
}

Result<QHash<QString, QString>, QString> readStrings(const QByteArray& bytes) {
    const StringsTable read = quoddle::readStrings({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    if (!read.error.empty())
        return failure(QString::fromStdString(read.error));
    QHash<QString, QString> table;
    for (const auto& [key, text] : read.texts)
        table.insert(QString::fromStdU16String(key), QString::fromStdU16String(text));
    return table;
}

} // namespace quoddle::Plist

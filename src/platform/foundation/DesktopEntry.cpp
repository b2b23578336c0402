// SPDX-License-Identifier: MIT
#include "platform/foundation/DesktopEntry.h"

#include "platform/base/File.h"
#include "platform/base/UserFolders.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QLocale>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kMaximumEntrySize = 64 << 10;
// Keeps file names, with the prefix and the longest extension, below 255 bytes, which is also the limit of bus names.
constexpr qsizetype kLongestName = 200;
constexpr qsizetype kMaximumIdentifierLength = 200;

bool isPlain(QChar c) {
    return c.unicode() < 0x80 && (c.isLetterOrNumber() || c == u'_' || c == u'-');
}

/// One part of a bus name. Other ASCII characters become "_", and characters beyond ASCII their numbers, so that different names stay
/// different.
QString partFrom(QStringView text) {
    QString part;
    for (QChar c : text)
        if (isPlain(c))
            part += c;
        else
            part += c.unicode() < 0x80 ? u"_"_s : u'_' + QString::number(c.unicode(), 16);
    if (part.isEmpty() || part.front().isDigit())
        part.prepend(u'_');
    return part;
}

/// An identifier that is too long is cut, and a digest of all of it is added to keep different ones apart.
QString limited(const QString& identifier) {
    if (identifier.size() <= kMaximumIdentifierLength)
        return identifier;
    const QByteArray digest = QCryptographicHash::hash(identifier.toUtf8(), QCryptographicHash::Sha256).toHex().left(16);
    return identifier.left(kMaximumIdentifierLength - 18) + u"_x"_s + QString::fromLatin1(digest);
}

QString unescaped(QStringView text) {
    static constexpr struct {
        char16_t letter;
        char16_t meaning;
    } kEscapes[] = {{u's', u' '}, {u'n', u'\n'}, {u't', u'\t'}, {u'r', u'\r'}, {u'\\', u'\\'}};
    QString out;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const auto* escape =
            text[i] == u'\\' && i + 1 < text.size()
                ? std::find_if(std::begin(kEscapes), std::end(kEscapes), [&](const auto& row) { return text[i + 1] == row.letter; })
                : std::end(kEscapes);
        if (escape == std::end(kEscapes)) {
            out += text[i];
        } else {
            out += QChar(escape->meaning);
            ++i;
        }
    }
    return out;
}

} // namespace

QString desktopNameForBundle(const NSBundle& bundle) {
    const QStringList given = bundle.bundleIdentifier().split(u'.', Qt::SkipEmptyParts);
    QStringList parts;
    for (const QString& part : given)
        parts << partFrom(part);
    if (parts.size() < 2)
        parts = {u"io"_s, u"quoddle"_s, u"applet"_s, partFrom(bundle.name())};
    return u"applet-"_s + limited(parts.join(u'.'));
}

QString desktopObjectPath(const QString& name) {
    QString path = u'/' + name;
    path.replace(u'.', u'/');
    path.replace(u'-', u'_');
    return path;
}

QString desktopEntriesFolder() {
    return QFile::decodeName((dataFolder() + "/applications").c_str());
}

QString desktopEntryPath(const QString& name) {
    return desktopEntriesFolder() + u'/' + name + u".desktop"_s;
}

namespace {

std::optional<DesktopEntryValues> valuesOfGroup(const QString& path, const QString& group, std::size_t maximumSize) {
    const auto bytes = readFile(path.toStdString(), maximumSize);
    if (!bytes)
        return std::nullopt;
    const QString text = QString::fromStdString(*bytes);
    const QString head = u'[' + group + u']';
    DesktopEntryValues values;
    bool isInGroup = false;
    for (QStringView line : QStringView(text).split(u'\n')) {
        line = line.trimmed();
        if (line.startsWith(u'[')) {
            isInGroup = line == head;
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (!isInGroup || equals <= 0 || line.startsWith(u'#'))
            continue;
        const QString key = line.left(equals).trimmed().toString();
        if (!values.contains(key))
            values.insert(key, unescaped(line.mid(equals + 1).trimmed()));
    }
    return values;
}

} // namespace

std::optional<DesktopEntryValues> desktopEntryValues(const QString& path) {
    return valuesOfGroup(path, u"Desktop Entry"_s, kMaximumEntrySize);
}

DesktopEntryValues desktopFileGroup(const QString& path, const QString& group, std::size_t maximumSize) {
    return valuesOfGroup(path, group, maximumSize).value_or(DesktopEntryValues());
}

QString desktopEntryName(const DesktopEntryValues& entry) {
    const QString locale = QLocale().name();
    for (const QString& key : {u"Name["_s + locale + u']', u"Name["_s + locale.section(u'_', 0, 0) + u']', u"Name"_s})
        if (const QString name = entry.value(key).simplified(); !name.isEmpty())
            return name.size() > kLongestName ? name.left(kLongestName - 1) + u'…' : name;
    return {};
}

std::optional<QString> desktopEntryValue(const QString& path, const QString& key) {
    const auto values = desktopEntryValues(path);
    return values && values->contains(key) ? std::optional(values->value(key)) : std::nullopt;
}

bool isInstalledOnDesktop(const NSBundle& bundle) {
    const auto installed = desktopEntryValue(desktopEntryPath(desktopNameForBundle(bundle)), kDesktopEntryBundleKey);
    return installed && QFileInfo(*installed).canonicalFilePath() == QFileInfo(bundle.bundlePath()).canonicalFilePath();
}

} // namespace quoddle

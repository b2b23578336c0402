// SPDX-License-Identifier: MIT
#include "DocumentTypes.h"

#include <functional>

#include <QMimeDatabase>
#include <QRegularExpression>

namespace quoddle::tool {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaximumWords = 1000;
constexpr qsizetype kMaximumWordLength = 120;
const QString kAnyMIMEType = u"application/octet-stream"_s;
constexpr auto kOwnTypes = "application/x-applet-"_L1;

struct IdentifierRow {
    QLatin1StringView identifier;
    const char* mimeTypes; // separated by blanks
};

// Families such as "public.text" list their members, because desktop entries have no wild cards.
constexpr IdentifierRow kIdentifiers[] = {
    {"public.text"_L1, "text/plain"},
    {"public.plain-text"_L1, "text/plain"},
    {"public.utf8-plain-text"_L1, "text/plain"},
    {"public.rtf"_L1, "application/rtf"},
    {"public.html"_L1, "text/html"},
    {"public.xml"_L1, "application/xml"},
    {"public.json"_L1, "application/json"},
    {"public.comma-separated-values-text"_L1, "text/csv"},
    {"public.source-code"_L1, "text/x-csrc text/x-c++src text/x-python application/javascript"},
    {"public.script"_L1, "application/x-shellscript text/x-python application/x-perl"},
    {"public.shell-script"_L1, "application/x-shellscript"},
    {"public.python-script"_L1, "text/x-python"},
    {"public.image"_L1, "image/png image/jpeg image/gif image/tiff image/bmp image/webp image/heif image/svg+xml"},
    {"public.jpeg"_L1, "image/jpeg"},
    {"public.png"_L1, "image/png"},
    {"public.tiff"_L1, "image/tiff"},
    {"public.heic"_L1, "image/heif"},
    {"public.svg-image"_L1, "image/svg+xml"},
    {"com.compuserve.gif"_L1, "image/gif"},
    {"com.microsoft.bmp"_L1, "image/bmp"},
    {"com.microsoft.ico"_L1, "image/vnd.microsoft.icon"},
    {"com.apple.icns"_L1, "image/x-icns"},
    {"com.adobe.pdf"_L1, "application/pdf"},
    {"com.adobe.postscript"_L1, "application/postscript"},
    {"public.audio"_L1, "audio/mpeg audio/mp4 audio/x-wav audio/flac audio/ogg audio/x-aiff"},
    {"public.mp3"_L1, "audio/mpeg"},
    {"public.mpeg-4-audio"_L1, "audio/mp4"},
    {"com.microsoft.waveform-audio"_L1, "audio/x-wav"},
    {"public.movie"_L1, "video/mp4 video/quicktime video/x-matroska video/webm video/mpeg video/x-msvideo"},
    {"public.video"_L1, "video/mp4 video/quicktime video/x-matroska video/webm video/mpeg video/x-msvideo"},
    {"public.mpeg-4"_L1, "video/mp4"},
    {"com.apple.quicktime-movie"_L1, "video/quicktime"},
    {"public.archive"_L1, "application/zip application/gzip application/x-tar application/x-7z-compressed"},
    {"public.zip-archive"_L1, "application/zip"},
    {"public.tar-archive"_L1, "application/x-tar"},
    {"org.gnu.gnu-zip-archive"_L1, "application/gzip"},
    {"public.vcard"_L1, "text/vcard"},
    {"com.apple.ical.ics"_L1, "text/calendar"},
    {"public.font"_L1, "font/ttf font/otf"},
};
constexpr QLatin1StringView kAnyIdentifiers[] = {"public.item"_L1, "public.data"_L1, "public.content"_L1};
constexpr QLatin1StringView kFolderIdentifiers[] = {"public.folder"_L1, "public.directory"_L1};

template<class Table>
bool contains(const Table& table, const QString& word) {
    return std::find(std::begin(table), std::end(table), word) != std::end(table);
}

/// Calls `take` for each text of an array, or for a single text in place of one, at most `left` times, and counts that down.
void eachText(const QVariant& value, int& left, const std::function<void(const QString&)>& take) {
    const QVariantList list = value.typeId() == QMetaType::QString ? QVariantList{value} : value.toList();
    for (const QVariant& item : list) {
        if (left <= 0)
            return;
        --left;
        const QString text = item.typeId() == QMetaType::QString ? item.toString().trimmed() : QString();
        if (!text.isEmpty() && text.size() <= kMaximumWordLength)
            take(text);
    }
}

bool isPlainExtension(const QString& extension) {
    static const QRegularExpression plain(u"^[A-Za-z0-9_+.-]+$"_s);
    return plain.match(extension).hasMatch();
}

/// The types that others than applets have brought to the desktop.
QStringList typesOfOthers(const QString& extension) {
    QStringList types;
    for (const QMimeType& type : QMimeDatabase().mimeTypesForFileName(u"x."_s + extension))
        if (!type.name().startsWith(kOwnTypes) && type.name() != kAnyMIMEType)
            types << type.name();
    return types;
}

void addExtensionTypes(const QString& extension, QStringList& types) {
    if (isPlainExtension(extension))
        types += typesOfOthers(extension);
}

void addOwnType(const QString& extension, const QString& comment, QList<OwnType>& types) {
    const QString type = kOwnTypes + extension.toLower();
    const bool isThere = std::any_of(types.begin(), types.end(), [&](const OwnType& own) { return own.mimeType == type; });
    if (!isThere && isPlainExtension(extension) && typesOfOthers(extension).isEmpty())
        types.append({extension.toLower(), type, comment.simplified().left(kMaximumWordLength)});
}

/// Adds the types of an identifier that the bundle itself declares, by their extensions and MIME types.
void addDeclaredTypes(const QString& identifier, const QVariantMap& info, QStringList& types) {
    int left = kMaximumWords;
    for (const QString& key : {u"UTExportedTypeDeclarations"_s, u"UTImportedTypeDeclarations"_s})
        for (const QVariant& item : info.value(key).toList().mid(0, kMaximumWords)) {
            const QVariantMap declaration = item.toMap();
            if (declaration.value(u"UTTypeIdentifier"_s).toString() != identifier)
                continue;
            const QVariantMap tags = declaration.value(u"UTTypeTagSpecification"_s).toMap();
            eachText(tags.value(u"public.filename-extension"_s), left,
                     [&](const QString& extension) { addExtensionTypes(extension, types); });
            eachText(tags.value(u"public.mime-type"_s), left, [&](const QString& type) { types << type; });
        }
}

} // namespace

DocumentTypes documentTypesIn(const QVariantMap& info) {
    DocumentTypes types;
    int left = kMaximumWords;
    for (const QVariant& item : info.value(u"CFBundleDocumentTypes"_s).toList().mid(0, kMaximumWords)) {
        const QVariantMap entry = item.toMap();
        eachText(entry.value(u"CFBundleTypeExtensions"_s), left, [&](const QString& text) {
            if (text == u'*')
                types.anyFile = true;
            else
                types.extensions << text;
        });
        eachText(entry.value(u"CFBundleTypeMIMETypes"_s), left, [&](const QString& text) { types.mimeTypes << text; });
        eachText(entry.value(u"CFBundleTypeOSTypes"_s), left, [&](const QString& text) {
            types.anyFile |= text == "****"_L1;
            types.folders |= text == "fold"_L1;
            if (text == "TEXT"_L1)
                types.identifiers << u"public.text"_s;
        });
        eachText(entry.value(u"LSItemContentTypes"_s), left, [&](const QString& text) {
            if (contains(kAnyIdentifiers, text))
                types.anyFile = true;
            else if (contains(kFolderIdentifiers, text))
                types.folders = true;
            else
                types.identifiers << text;
        });
    }
    for (QStringList* list : {&types.identifiers, &types.extensions, &types.mimeTypes})
        list->removeDuplicates();
    return types;
}

QStringList desktopTypesFor(const DocumentTypes& types, const QVariantMap& info) {
    QStringList all = types.mimeTypes;
    if (types.anyFile)
        all << kAnyMIMEType;
    for (const QString& extension : types.extensions)
        addExtensionTypes(extension, all);
    for (const QString& identifier : types.identifiers) {
        const auto* row =
            std::find_if(std::begin(kIdentifiers), std::end(kIdentifiers), [&](const auto& r) { return r.identifier == identifier; });
        if (row != std::end(kIdentifiers))
            all << QString::fromLatin1(row->mimeTypes).split(u' ');
        else
            addDeclaredTypes(identifier, info, all);
    }
    // Types that name files. Schemes of addresses and plugged-in devices are left out, because an applet that claims them would open in
    // place of the browser.
    static const QRegularExpression valid(
        u"^(application|audio|font|image|message|model|multipart|text|video|x-(?!scheme-handler/|content/)[a-z0-9-]+)/"
        u"[A-Za-z0-9!#$&^_.+-]+$"_s);
    QStringList result = all.filter(valid);
    result.removeDuplicates();
    result.sort();
    return result;
}

QList<OwnType> ownTypesIn(const QVariantMap& info) {
    QList<OwnType> types;
    int left = kMaximumWords;
    for (const QVariant& item : info.value(u"CFBundleDocumentTypes"_s).toList().mid(0, kMaximumWords)) {
        const QVariantMap entry = item.toMap();
        eachText(entry.value(u"CFBundleTypeExtensions"_s), left,
                 [&](const QString& extension) { addOwnType(extension, entry.value(u"CFBundleTypeName"_s).toString(), types); });
        eachText(entry.value(u"LSItemContentTypes"_s), left, [&](const QString& identifier) {
            for (const QVariant& declared : info.value(u"UTExportedTypeDeclarations"_s).toList().mid(0, kMaximumWords)) {
                const QVariantMap declaration = declared.toMap();
                if (declaration.value(u"UTTypeIdentifier"_s).toString() == identifier)
                    eachText(declaration.value(u"UTTypeTagSpecification"_s).toMap().value(u"public.filename-extension"_s), left,
                             [&](const QString& extension) {
                                 addOwnType(extension, declaration.value(u"UTTypeDescription"_s).toString(), types);
                             });
            }
        });
    }
    return types;
}

QString describe(const DocumentTypes& types) {
    QStringList groups;
    if (types.anyFile)
        groups << u"any file"_s;
    if (types.folders)
        groups << u"folders"_s;
    for (const QStringList* list : {&types.extensions, &types.mimeTypes, &types.identifiers})
        if (!list->isEmpty())
            groups << list->join(u", "_s);
    return groups.isEmpty() ? u"none"_s : groups.join(u"; "_s);
}

} // namespace quoddle::tool

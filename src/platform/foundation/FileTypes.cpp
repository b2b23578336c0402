// SPDX-License-Identifier: MIT
#include "platform/foundation/FileTypes.h"

#include "platform/foundation/UTType.h"

#include <QFileInfo>
#include <QMimeDatabase>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMostEntries = 1000;
constexpr qsizetype kOSTypeSize = 4;

/// The wanted type of the last two extensions together ("tar.gz"), else of the last one. A name with no dot but the first character has no
/// extension.
QString typeForName(const QString& name, bool wanted(const QString& type)) {
    const qsizetype last = name.lastIndexOf(u'.');
    if (last <= 0)
        return {};
    const qsizetype beforeLast = name.lastIndexOf(u'.', last - 1);
    for (const qsizetype dot : {beforeLast, last}) {
        if (dot <= 0)
            continue;
        const QStringList types = UTTypeCreateAllIdentifiersForTag(kUTTagClassFilenameExtension, name.mid(dot + 1));
        const auto type = std::find_if(types.begin(), types.end(), wanted);
        if (type != types.end())
            return *type;
    }
    return {};
}

bool isDirectoryType(const QString& type) {
    return UTTypeConformsTo(type, u"public.directory"_s);
}

bool isDataType(const QString& type) {
    return !isDirectoryType(type);
}

QString typeOfDirectory(const QString& path, const QString& name) {
    const QString type = typeForName(name, &isDirectoryType);
    if (!type.isEmpty())
        return type;
    return QFileInfo::exists(path + u"/Contents/Info.plist"_s) ? u"com.apple.bundle"_s : u"public.folder"_s;
}

} // namespace

QString typeIdentifierOfFile(const QString& path) {
    const QFileInfo info(path);
    if (info.isSymLink())
        return u"public.symlink"_s;
    if (info.isDir())
        return typeOfDirectory(path, info.fileName());
    if (!info.isFile()) // other things, such as pipes, must not be opened
        return u"public.item"_s;
    const QString type = typeForName(info.fileName(), &isDataType);
    return !type.isEmpty() ? type
                           : UTTypeCreatePreferredIdentifierForTag(kUTTagClassMIMEType, QMimeDatabase().mimeTypeForFile(info).name());
}

bool fileConformsToType(const QString& path, const QString& type) {
    return UTTypeConformsTo(typeIdentifierOfFile(path), type);
}

QString displayNameOfFile(const QString& path) {
    const QString name = path.mid(path.lastIndexOf(u'/') + 1);
    return name.isEmpty() ? path : name;
}

QString drawableName(QString name) {
    // Few fonts have the pictures of single control characters.
    constexpr QChar kLineBreak = u'↵', kOther = QChar::ReplacementCharacter;
    const auto breaksLine = [](QChar character) {
        return (character >= u'\n' && character <= u'\r') || character == QChar(0x85) || character == QChar::LineSeparator ||
               character == QChar::ParagraphSeparator;
    };
    const auto reorders = [](QChar character) { // the controls for bidirectional embeddings, overrides and isolates
        return (character >= u'\u202A' && character <= u'\u202E') || (character >= u'\u2066' && character <= u'\u2069');
    };
    for (QChar& character : name)
        if (breaksLine(character))
            character = kLineBreak;
        else if (character < u' ' || character == QChar(0x7F) || reorders(character))
            character = kOther;
    return name;
}

bool isFilePackage(const QString& path) {
    return isFilePackage(path, QFileInfo(path).isDir());
}

bool isFilePackage(const QString& path, bool isDirectory) {
    if (!isDirectory)
        return false;
    const QString type = typeOfDirectory(path, path.mid(path.lastIndexOf(u'/') + 1));
    return UTTypeConformsTo(type, u"com.apple.package"_s) || type == "com.apple.bundle"_L1;
}

AllowedFileTypes::AllowedFileTypes(const QStringList& entries) {
    for (const QString& entry : entries.first(std::min(entries.size(), kMostEntries)))
        add(entry);
    mEverything = mEverything || (mTypes.isEmpty() && mSuffixes.isEmpty());
}

void AllowedFileTypes::add(const QString& entry) {
    if (entry == "*"_L1 || entry == "*.*"_L1 || entry == "****"_L1) {
        mEverything = true;
        return;
    }
    if (entry.size() == kOSTypeSize) {
        if (const QStringList types = UTTypeCreateAllIdentifiersForTag(kUTTagClassOSType, entry); !types.isEmpty()) {
            mTypes += types;
            return;
        }
    }
    QString extension = entry.trimmed().toLower();
    if (extension.startsWith(u'*'))
        extension.remove(0, 1);
    if (extension.startsWith(u'.'))
        extension.remove(0, 1);
    if (extension.isEmpty())
        return;
    if (extension.contains(u'.'))
        mTypes << extension; // undeclared, so it may be a type identifier or an extension of two parts: allow both
    if (UTTypeIsDeclared(extension))
        return;
    mSuffixes << u'.' + extension;
    mExactTypes += UTTypeCreateAllIdentifiersForTag(kUTTagClassFilenameExtension, extension);
}

std::optional<AllowedFileTypes::Filter> AllowedFileTypes::filter() const {
    Filter filter;
    if (mEverything)
        return filter;
    const QStringList types = mTypes + mExactTypes;
    if (std::any_of(types.begin(), types.end(), &isDirectoryType))
        return std::nullopt;
    for (const QString& suffix : mSuffixes)
        filter.namePatterns << u'*' + suffix << u'*' + suffix.toUpper();
    for (const QMimeType& mimeType : QMimeDatabase().allMimeTypes()) {
        const QString type = UTTypeCreatePreferredIdentifierForTag(kUTTagClassMIMEType, mimeType.name());
        const auto isAllowed = [this, all = UTTypeCopyConformances(type)](const QString& wanted) {
            return all.contains(wanted, Qt::CaseInsensitive);
        };
        if (mExactTypes.contains(type, Qt::CaseInsensitive) || std::any_of(mTypes.begin(), mTypes.end(), isAllowed))
            filter.mimeTypes << mimeType.name();
    }
    return filter;
}

bool AllowedFileTypes::matches(const QString& path) const {
    if (mEverything)
        return true;
    const QFileInfo info(path);
    const QString target = info.isSymLink() ? info.canonicalFilePath() : path;
    for (const QString& name : {info.fileName().toLower(), target.mid(target.lastIndexOf(u'/') + 1).toLower()})
        for (const QString& suffix : mSuffixes)
            if (name.size() > suffix.size() && name.endsWith(suffix))
                return true;
    if (mTypes.isEmpty() && mExactTypes.isEmpty())
        return false;
    const QString type = typeIdentifierOfFile(target);
    if (mExactTypes.contains(type, Qt::CaseInsensitive))
        return true;
    const QStringList all = UTTypeCopyConformances(type);
    return std::any_of(mTypes.begin(), mTypes.end(), [&all](const QString& wanted) { return all.contains(wanted, Qt::CaseInsensitive); });
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The uniform type identifiers of files and folders, and whether a file is of one of the wanted types.
// Decision: a known name extension decides; the contents are read only when the name says nothing.
// Any thread; may read the first bytes of a file.
#pragma once

#include <optional>

#include <QStringList>

class QFileInfo;

namespace quoddle {

/// The most specific type; links are not followed. "public.item" for a path without a file and for anything that is neither file nor
/// folder.
QString typeIdentifierOfFile(const QString& path);
bool fileConformsToType(const QString& path, const QString& type);
/// The name that file managers show for a path: its last component, or "/".
QString displayNameOfFile(const QString& path);
/// A name or path for drawing on one line. Characters that would break the line, be invisible, or reorder the letters around them (and make
/// "gpj.exe" look like "exe.jpg") are replaced by visible signs. Each character has one in the result at the same place.
QString drawableName(QString name);
/// Whether file managers show a folder as one thing, because of its extension or because it has Contents/Info.plist. Links are followed.
/// False for files.
bool isFilePackage(const QString& path);
/// As isFilePackage(path), for callers that know already whether the path is a folder.
bool isFilePackage(const QString& path, bool isDirectory);

/// The file types that a script allows. An entry is a type identifier, a name extension with or without its dot, or the four characters of
/// an OSType.
class AllowedFileTypes {
public:
    /// Without entries, with empty ones only, or with "*" or "****" among them everything is allowed.
    explicit AllowedFileTypes(const QStringList& entries = {});

    bool isEverything() const { return mEverything; }
    /// Links are followed.
    bool matches(const QString& path) const;

    /// Nearly the same for choosers that know no type identifiers: patterns of names and MIME types.
    struct Filter {
        QStringList namePatterns;
        QStringList mimeTypes;
    };
    /// nullopt when folders are among the allowed types, for which such choosers have no word. Everything: empty lists.
    std::optional<Filter> filter() const;

private:
    void add(const QString& entry);

    QStringList mTypes;      // types that are allowed together with all that conform to them
    QStringList mExactTypes; // types of the extensions, without their subtypes: "jpg" also allows "jpeg", but "txt" allows no sources
    QStringList mSuffixes;   // lower case, with the dot
    bool mEverything = false;
};

} // namespace quoddle

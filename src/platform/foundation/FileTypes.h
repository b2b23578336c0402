// SPDX-License-Identifier: MIT
// What kind of thing a file or folder is, by uniform type identifiers, and whether it is one of those that somebody asks for.
// One decision: a name extension that is known decides; the contents are looked at only when the name says nothing.
// Any thread; it may read the first bytes of a file.
#pragma once

#include <QStringList>

class QFileInfo;

namespace quoddle {

/// The nearest type; links are not followed. "public.item" for what is not there or is neither file nor folder.
QString typeIdentifierOfFile(const QString& path);
bool fileConformsToType(const QString& path, const QString& type);
/// The name that file managers show for a path: its last component, or "/".
QString displayNameOfFile(const QString& path);
/// A name or path as it is drawn on one line: characters that would break the line, vanish, or reorder the letters around them (and make
/// "gpj.exe" look like "exe.jpg") are drawn as signs. As long as `name`, character for character.
QString drawableName(QString name);
/// Whether a folder is shown as one thing: by its extension, or because it has Contents/Info.plist. Links are followed. False for files.
bool isFilePackage(const QString& path);
/// The same when it is known already whether it is a folder.
bool isFilePackage(const QString& path, bool isDirectory);

/// A script's choice of files: each entry a type identifier, a name extension with or without its dot, or the four characters of an OSType.
class AllowedFileTypes {
public:
    /// No entries, empty ones only, or "*" or "****" among them: everything is allowed.
    explicit AllowedFileTypes(const QStringList& entries = {});

    bool isEverything() const { return mEverything; }
    /// Links are followed.
    bool matches(const QString& path) const;

private:
    void add(const QString& entry);

    QStringList mTypes;      // and whatever conforms to them
    QStringList mExactTypes; // what the extensions stand for: "jpg" means "jpeg" too, but "txt" means no sources
    QStringList mSuffixes;   // lower case, with the dot
    bool mEverything = false;
};

} // namespace quoddle

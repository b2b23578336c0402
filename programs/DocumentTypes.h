// SPDX-License-Identifier: MIT
// The kinds of files that a bundle says it opens: in the form of its property list and in the desktop's.
//
// Decision: folders are never claimed from the desktop; an applet that takes them would open in place of the file manager.
#pragma once

#include <QList>
#include <QStringList>
#include <QVariantMap>

namespace quoddle::tool {

struct DocumentTypes {
    QStringList identifiers; ///< uniform type identifiers
    QStringList extensions;  ///< without the dot
    QStringList mimeTypes;   ///< MIME types that the bundle names itself
    bool anyFile = false;
    bool folders = false;
};

/// The types in "CFBundleDocumentTypes". Entries of another form are skipped, and so is everything after the first thousand words.
DocumentTypes documentTypesIn(const QVariantMap& info);
/// The MIME types for a desktop entry, sorted, without ownTypesIn(). `info` may declare identifiers of its own.
QStringList desktopTypesFor(const DocumentTypes& types, const QVariantMap& info);
/// A type that only this applet's files have: the desktop knows none with the extension.
struct OwnType {
    QString extension;
    QString mimeType;
    QString comment; ///< the name that the bundle gives to it; may be empty
};
/// The types for extensions that no other program has brought to the desktop, by the extension.
QList<OwnType> ownTypesIn(const QVariantMap& info);
/// The types as text for people: "any file", "png, txt; public.image".
QString describe(const DocumentTypes& types);

} // namespace quoddle::tool

// SPDX-License-Identifier: MIT
// The kinds of files that a bundle says it opens, as its property list has them and as the desktop names them.
//
// Decision: folders are never claimed from the desktop; an applet that takes them would open in place of the file manager.
#pragma once

#include <QStringList>
#include <QVariantMap>

namespace quoddle::tool {

struct DocumentTypes {
    QStringList identifiers; ///< uniform type identifiers
    QStringList extensions;  ///< without the dot
    QStringList mimeTypes;   ///< those given as such
    bool anyFile = false;
    bool folders = false;
};

/// "CFBundleDocumentTypes"; entries of another form are passed over, and so is what comes after the first thousand words.
DocumentTypes documentTypesIn(const QVariantMap& info);
/// What a desktop entry can say of them, sorted. `info` may declare identifiers of its own.
QStringList desktopTypesFor(const DocumentTypes& types, const QVariantMap& info);
/// For people: "any file", "png, txt; public.image".
QString describe(const DocumentTypes& types);

} // namespace quoddle::tool

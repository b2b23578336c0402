// SPDX-License-Identifier: MIT
// Resource values of files for predicates, and the path of an existing file for its URL.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"

#include <optional>
#include <string>

#include <QUrl>

namespace quoddle {

inline const QString NSURLPathKey = QStringLiteral("_NSURLPathKey");                    // text
inline const QString NSURLIsDirectoryKey = QStringLiteral("NSURLIsDirectoryKey");       // boolean; links are not followed
inline const QString NSURLIsPackageKey = QStringLiteral("NSURLIsPackageKey");           // boolean; false for anything but a folder
inline const QString NSURLTypeIdentifierKey = QStringLiteral("NSURLTypeIdentifierKey"); // text

/// The four values of a file; each is found out when it is first asked for, then kept. May be used on any thread, but on one at a time; may
/// read the first bytes of the file. A file that does not exist has a path and the type "public.item".
PredicateValues resourceValuesOfFile(const QString& path);

/// The absolute path of an existing file of this computer; nullopt for anything else.
std::optional<std::string> pathOfExistingFile(const QUrl& url);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The URL of a file: the path of an existing one, and its resource values, as predicates ask for them.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"

#include <optional>
#include <string>

#include <QUrl>

namespace quoddle {

inline const QString NSURLPathKey = QStringLiteral("_NSURLPathKey");                    // text
inline const QString NSURLIsDirectoryKey = QStringLiteral("NSURLIsDirectoryKey");       // boolean; links are not followed
inline const QString NSURLIsPackageKey = QStringLiteral("NSURLIsPackageKey");           // boolean; false for what is no folder
inline const QString NSURLTypeIdentifierKey = QStringLiteral("NSURLTypeIdentifierKey"); // text

/// The four values of a file, each found out when it is first asked for and kept. Any thread, one at a time; it may read the first bytes
/// of the file. A file that is not there has a path and a type, "public.item".
PredicateValues resourceValuesOfFile(const QString& path);

/// The absolute path of an existing file of this computer; none for anything else.
std::optional<std::string> pathOfExistingFile(const QUrl& url);

} // namespace quoddle

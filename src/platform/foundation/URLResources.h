// SPDX-License-Identifier: MIT
// The resource values of a file's URL, as predicates ask for them.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"

namespace quoddle {

inline const QString NSURLPathKey = QStringLiteral("_NSURLPathKey");                     // text
inline const QString NSURLIsDirectoryKey = QStringLiteral("NSURLIsDirectoryKey");        // boolean; links are not followed
inline const QString NSURLIsPackageKey = QStringLiteral("NSURLIsPackageKey");            // boolean; false for what is no folder
inline const QString NSURLTypeIdentifierKey = QStringLiteral("NSURLTypeIdentifierKey");  // text

/// The four values of a file, each found out when it is first asked for and kept. Any thread, one at a time; it may read the first bytes
/// of the file. A file that is not there has a path and a type, "public.item".
PredicateValues resourceValuesOfFile(const QString& path);

} // namespace quoddle

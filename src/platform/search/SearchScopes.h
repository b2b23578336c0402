// SPDX-License-Identifier: MIT
// The folders that the scopes of a query mean.
#pragma once

#include <QStringList>

namespace quoddle {

/// Absolute paths of folders, without duplicates and without folders that are searched as a part of another one. Scopes that are no
/// absolute paths are ignored. Main thread.
QStringList foldersOfSearchScopes(const QStringList& scopes);

} // namespace quoddle

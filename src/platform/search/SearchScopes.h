// SPDX-License-Identifier: MIT
// The folders that the scopes of a query stand for.
#pragma once

#include <QStringList>

namespace quoddle {

/// Main thread. Absolute paths of folders, each once and none that lies in another one's search. What is no absolute path is left out.
QStringList foldersOfSearchScopes(const QStringList& scopes);

} // namespace quoddle

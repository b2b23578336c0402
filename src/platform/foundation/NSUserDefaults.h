// SPDX-License-Identifier: MIT
// What an applet remembers between launches: one settings file for each applet below the user's configuration folder.
#pragma once

#include <QSettings>

namespace quoddle {

/// Main thread. Created on first use; the domain must be set before.
QSettings& standardUserDefaults();

/// Names the file: the applet's bundle identifier, or any other text (what a file name cannot hold is replaced). Once, before the first
/// use.
void setUserDefaultsDomain(const QString& domain);

} // namespace quoddle

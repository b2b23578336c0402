// SPDX-License-Identifier: MIT
// The settings that an applet keeps between launches, in one file per applet below the user's configuration folder.
#pragma once

#include <QSettings>

namespace quoddle {

/// Main thread. Opened on first use, after setUserDefaultsDomain().
QSettings& standardUserDefaults();

/// Sets the file's name: the applet's bundle identifier or any other text; characters that file names cannot hold are replaced. Called
/// once, before the first use.
void setUserDefaultsDomain(const QString& domain);

} // namespace quoddle

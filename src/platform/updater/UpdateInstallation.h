// SPDX-License-Identifier: MIT
// Whether an update can replace an applet, and the replacement.
//
// Decision: only the whole bundle is replaced, in one step, and only by one that its maker has signed. The programs that start the applet
// on this machine (Contents/Linux) belong to this machine and are kept.
#pragma once

#include "platform/base/OSStatus.h"
#include "platform/updater/Appcast.h"

#include <QString>

namespace quoddle {

class NSBundle;

/// Whether the path is in a folder that package managers own. They would not know about a replacement.
bool belongsToPackage(const QString& path);

/// Why the update can only be announced, as a message for the user; empty when it can be installed.
QString obstacleToInstalling(const NSBundle& installed, const AppcastItem& item);

/// Why an unpacked bundle is not the announced one, as a message for the user; empty when it is. The signature is not enough, because an
/// attacker could offer an old signed archive.
QString faultOfUnpackedBundle(const NSBundle& unpacked, const NSBundle& installed, const AppcastItem& item);

/// A template for QTemporaryDir: a hidden folder beside the bundle, from which an unpacked bundle can be renamed to the bundle's place.
QString stagingTemplate(const NSBundle& installed);
/// Removes staging folders that a killed applet has left behind. Only one applet runs from a bundle at a time, so none is in use.
void removeStaleStaging(const NSBundle& installed);

/// Replaces the installed bundle by the one at `unpacked`, which is in a folder made from stagingTemplate(). After an error the installed
/// bundle is unchanged.
OSStatus installUpdate(const QString& unpacked, const QString& installed);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Whether an update can be put in the place of an applet, and doing so.
//
// Decision: only the whole bundle is exchanged, in one step, and only for one that its maker has signed; what starts the applet on this
// machine (Contents/Linux) is this machine's and is carried over.
#pragma once

#include "platform/base/OSStatus.h"
#include "platform/updater/Appcast.h"

#include <QString>

namespace quoddle {

class NSBundle;

/// Whether a package manager puts things there, which would then no longer know what stands in that place.
bool belongsToPackage(const QString& path);

/// Why the update can only be announced, as a sentence for people; empty when it can be installed.
QString obstacleToInstalling(const NSBundle& installed, const AppcastItem& item);

/// Why an unpacked bundle is not what was announced, as a sentence for people; empty when it is. A signed archive alone could be an old
/// one.
QString faultOfUnpackedBundle(const NSBundle& unpacked, const NSBundle& installed, const AppcastItem& item);

/// A hidden folder beside the bundle, for QTemporaryDir: what is unpacked there can be renamed to the bundle's place.
QString stagingTemplate(const NSBundle& installed);
/// Removes those that were left behind when an applet was killed. Only one applet runs from a bundle at a time.
void removeStaleStaging(const NSBundle& installed);

/// Puts the bundle at `unpacked`, in a folder made from stagingTemplate(), in the place of the installed one. On an error that one stands
/// as it was.
OSStatus installUpdate(const QString& unpacked, const QString& installed);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Unpacks the bundle in a zip or tar archive.
//
// Decision: the archive is hostile until shown otherwise. Only what stands below one folder NAME.app at its top is taken; every name goes
// below that folder or ends the whole; links are made last, so that nothing is ever written through one, and lead nowhere outside.
#pragma once

#include "platform/base/Result.h"

#include <QString>

namespace quoddle {

struct UnpackingBounds {
    qint64 bytes = qint64(1) << 30; ///< of all files together, as they are unpacked
    int entries = 100'000;
};

/// `folder` exists, is empty, and is changed by nobody else meanwhile. The path of the bundle in it, or a text for people; what was
/// unpacked until then is left to the caller. Files are made anew with the permissions of ordinary files, or of programs where the archive
/// has them as such.
Result<QString, QString> unpackBundle(const QString& archive, const QString& folder, const UnpackingBounds& bounds = {});

} // namespace quoddle

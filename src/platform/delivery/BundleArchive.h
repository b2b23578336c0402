// SPDX-License-Identifier: MIT
// Unpacks the bundle in a zip or tar archive.
//
// Decision: the archive is not trusted. Only the contents of one folder NAME.app at its top are unpacked. A name that leads out of that
// folder is an error. Links are made last and must stay inside, so that nothing is ever written through one.
#pragma once

#include "platform/base/Result.h"

#include <algorithm>

#include <QString>

namespace quoddle {

struct UnpackingRules {
    qint64 bytes = qint64(1) << 30; ///< of all unpacked files together
    int entries = 100'000;          ///< files and folders
    bool onlyZip = false;

    /// Files of ordinary contents become a hundred times smaller at most; the first megabytes are free.
    qint64 mostBytesFor(qint64 archiveSize) const { return std::min(bytes, (qint64(16) << 20) + 200 * archiveSize); }
};

/// `folder` exists and is empty, and nobody else changes it meanwhile. Returns the path of the bundle in it, or a message for the user;
/// after an error the caller removes what has been unpacked. Files get the permissions of ordinary files, or of programs when the archive
/// has them as programs.
Result<QString, QString> unpackBundle(const QString& archive, const QString& folder, const UnpackingRules& rules = {});

} // namespace quoddle

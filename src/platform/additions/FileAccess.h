// SPDX-License-Identifier: MIT
// What the commands that work inside files share: which file is meant, and how positions are counted.
#pragma once

#include "platform/additions/OpenFiles.h"
#include "platform/ae/AEDesc.h"

namespace quoddle::additions {

struct FileTarget {
    std::shared_ptr<OpenFile> file; ///< null when the status is not 0
    std::string path;               ///< empty for a number that is not open
    OSStatus status = noErr;
    bool isOwn = false; ///< opened for this command only
};

/// A file number, or a file; one that no script has opened is opened for reading. -38 for a number that is not open, -1700 for what is no
/// file.
FileTarget fileTargetOf(const AEDesc& file);
/// The error of a target.
OSErr failTarget(AEDesc& reply, const FileTarget& target, const AEDesc& given);

/// A position in bytes from the beginning for one that counts from 1, or from the end when it is negative (-1 is the last byte). "eof" is
/// the end. Empty for what is no position or lies before the beginning.
std::optional<std::int64_t> filePosition(const AEDesc& position, std::int64_t size);

} // namespace quoddle::additions

// SPDX-License-Identifier: MIT
// The common ground of the commands for file contents: finding the file that is meant, and counting positions.
#pragma once

#include "platform/additions/OpenFiles.h"
#include "platform/ae/AEDesc.h"

namespace quoddle::additions {

struct FileTarget {
    std::shared_ptr<OpenFile> file; ///< null when the status is not 0
    std::string path;               ///< empty for a number that is not open
    OSStatus status = noErr;
    bool isOwn = false; ///< opened only for this command
};

/// The target for a file number or a file. A file that no script has opened is opened for this one command: for writing (a missing file is
/// created) when `writable`, otherwise for reading. -38 for a number that is not open, -1700 for anything that is no file.
FileTarget fileTargetOf(const AEDesc& file, bool writable);
/// Puts the target's error into the reply.
OSErr failTarget(AEDesc& reply, const FileTarget& target, const AEDesc& given);

/// The offset in bytes from the beginning. `position` counts from 1 (0 also stands for the first byte), from the end when negative (-1 is
/// the last byte); "eof" is the end. nullopt for anything else and for a position before the beginning.
std::optional<std::int64_t> filePosition(const AEDesc& position, std::int64_t size);

} // namespace quoddle::additions

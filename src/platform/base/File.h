// SPDX-License-Identifier: MIT
// Whole files: read within a bound, written so that nothing is ever half there.
#pragma once

#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"

#include <string>
#include <string_view>

namespace quoddle {

/// -43 no such file, -37 no name for a file, -54 no permission, -108 larger than `maximumSize` bytes, -50 a folder or no ordinary file, -36
/// the reading failed.
Result<std::string, OSStatus> readFile(const std::string& path, std::size_t maximumSize);

/// The first `maximumSize` bytes of a file, or all where there are fewer. Errors as above; no file is too large.
Result<std::string, OSStatus> readFileStart(const std::string& path, std::size_t maximumSize);

/// Reads an open descriptor, such as that of a pipe, and waits for its end. -108: more than `maximumSize` bytes; -36: the reading failed.
Result<std::string, OSStatus> readToEnd(int descriptor, std::size_t maximumSize);

/// Writes beside the file and renames, so that the file is the old one or the new one at all times. Links are followed. An existing file
/// keeps its permissions, but for those to run as its owner, and its owner when we may give files away. Pipes and devices that take bytes
/// one after the other are written to; one that nobody reads is an error (-36). A name for an open file (/dev/stdout, /dev/fd/3) is written
/// to where that file stands, behind what is there. -54 no permission, -34 the disk is full, -37 the name is too long, -48 a link that
/// leads nowhere, -50 a folder or something else that is no file, -120 no such folder, -36 anything else.
OSStatus writeFile(const std::string& path, std::string_view bytes);

/// The place where a file written to `path` ends up: the path itself, or what a link there stands for. -48 when that is nothing, -50 when
/// it is a name for an open file.
Result<std::string, OSStatus> writtenPath(const std::string& path);

/// A new file with the contents of another, and with its permissions, but for those to run as its owner. Links are not followed, neither at
/// the one end nor at the other. Statuses as those of writeFile().
OSStatus copyFile(const std::string& from, const std::string& to);

/// For mkostemp() and mkdtemp(): a hidden name in the folder of `path`, from where it can be renamed to it.
std::string nameBeside(const std::string& path);

/// The status number for an errno value.
OSStatus statusFromErrno(int error);

} // namespace quoddle

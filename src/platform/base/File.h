// SPDX-License-Identifier: MIT
// Whole files: read up to a maximum size, and written so that no reader ever finds half a file.
#pragma once

#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"

#include <string>
#include <string_view>

namespace quoddle {

/// Errors: -43 no such file, -37 no name for a file, -54 no permission, -108 larger than `maximumSize` bytes, -50 a folder or no ordinary
/// file, -36 the reading failed.
Result<std::string, OSStatus> readFile(const std::string& path, std::size_t maximumSize);

/// The first `maximumSize` bytes of a file, or all when there are fewer. Errors as of readFile(), except that no file is too large.
Result<std::string, OSStatus> readFileStart(const std::string& path, std::size_t maximumSize);

/// Reads an open descriptor, such as a pipe's, until its end. Errors: -108 more than `maximumSize` bytes, -36 the reading failed.
Result<std::string, OSStatus> readToEnd(int descriptor, std::size_t maximumSize);

/// Writes a new file beside the old one and renames it, so that at any time the path leads to the old contents or to the new ones. Links
/// are followed. An existing file keeps its permissions, except set-user-ID and set-group-ID, and its owner when the process may give files
/// away. Pipes and character devices are written to directly; a pipe that nobody reads is an error (-36). A name for an open file
/// (/dev/stdout, /dev/fd/3) is written to at the file's position when this process has it open, else at its end. Errors: -54 no permission,
/// -34 the disk is full, -37 the name is too long, -48 a link that leads nowhere, -50 a folder or something else that is no file, -120 no
/// such folder, -36 anything else.
OSStatus writeFile(const std::string& path, std::string_view bytes);

/// The path that writeFile() would write to: the path itself, or what a link there stands for. Errors: -48 for a link that leads nowhere,
/// -50 for a name of an open file.
Result<std::string, OSStatus> writtenPath(const std::string& path);

/// Makes a new file with the contents and the permissions of another, except set-user-ID and set-group-ID. Neither path may be a link.
/// Errors as of writeFile().
OSStatus copyFile(const std::string& from, const std::string& to);

/// A pattern for mkostemp() and mkdtemp(): a hidden name in the folder of `path`, so that the result can be renamed to `path`.
std::string nameBeside(const std::string& path);

/// "/" stays.
std::string withoutSlashAtEnd(std::string path);

/// The status number for an errno value.
OSStatus statusFromErrno(int error);

} // namespace quoddle

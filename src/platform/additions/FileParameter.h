// SPDX-License-Identifier: MIT
// Files as parameters and results of commands: file URLs, colon paths and POSIX paths in, file URLs and colon paths out.
//
// A colon path's first component names the startup disk and is dropped: this system has one tree. Paths are absolute UTF-8 without a slash
// at the end.
#pragma once

#include "platform/additions/Command.h"

namespace quoddle::additions {

/// A file URL or alias, a specifier such as file "Macintosh HD:a:b", a colon path, or a POSIX path ("~" is the home folder; relative ones
/// count from the working directory). Empty when it is none of these.
std::optional<std::string> filePathOf(const AEDesc& file);
std::optional<std::string> fileParameter(const AEDesc& event, AEKeyword key);

/// "Macintosh HD:a:b", with a colon at the end for a folder.
std::u16string colonPath(std::string_view path, bool isFolder);
/// As an alias or a file ("furl"); a text class gives the colon path. 0 means alias.
AEDesc fileResult(const std::string& path, DescType asClass);

/// -43 and its relatives with the text that names the file, and the file as the offending object.
OSErr failFile(AEDesc& reply, OSStatus status, const std::string& path);

std::string homeFolder();
/// After the last slash, "Macintosh HD" for the root.
std::string fileName(const std::string& path);
/// Where an environment variable is unset or relative: the default.
std::string pathFromEnvironment(const char* variable, const std::string& otherwise);

} // namespace quoddle::additions

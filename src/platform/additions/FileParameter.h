// SPDX-License-Identifier: MIT
// Files as parameters and results of commands. Parameters are file URLs, colon paths or POSIX paths, results are file URLs or colon paths.
//
// The first component of a colon path names the startup disk and is dropped, because this system has a single tree. Paths are absolute
// UTF-8 without a slash at the end.
#pragma once

#include "platform/additions/Command.h"

namespace quoddle::additions {

/// The path of a file URL or alias, a specifier such as file "Macintosh HD:a:b", a colon path, or a POSIX path ("~" is the home folder;
/// relative paths start at the working directory). nullopt for anything else.
std::optional<std::string> filePathOf(const AEDesc& file);
std::optional<std::string> fileParameter(const AEDesc& event, AEKeyword key);

/// "Macintosh HD:a:b", with a colon at the end for a folder.
std::u16string colonPath(std::string_view path, bool isFolder);
/// The file as an alias, a file ("furl") or, for a text class, its colon path. 0 stands for alias.
AEDesc fileResult(const std::string& path, DescType asClass);

/// Puts an error of a file into the reply: the status, a message with the file's name, and the file as the offending object.
OSErr failFile(AEDesc& reply, OSStatus status, const std::string& path);

/// The part behind the last slash; "Macintosh HD" for the root.
std::string fileName(const std::string& path);

} // namespace quoddle::additions

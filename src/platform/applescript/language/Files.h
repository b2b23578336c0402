// SPDX-License-Identifier: MIT
// Files as values: aliases, file objects and POSIX files, which are descriptors of type "alis" or "furl" holding a file URL.
//
// The colon paths of the language are mapped onto the one tree of this system: the first component names the startup disk and is dropped.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

using machine::Data;
using machine::Machine;
using machine::Value;

bool isFile(Value value);
/// The absolute path in UTF-8. Empty when the descriptor holds no path.
std::string posixPath(const Data& file);
/// The colon path "Disk:folder:file", with a colon at the end of a folder's.
std::u16string hfsPath(const Data& file);
/// Makes a file value of a kind from a POSIX path.
Value fileFromPath(Machine& machine, std::string_view path, FourCharCode kind);
/// Makes "alias", "file" or "POSIX file" of a text or of another file. Failure, with nothing raised, when that is impossible; an alias
/// needs something that exists.
Value makeFile(Machine& machine, Value from, FourCharCode kind);

std::string posixPathFromColons(std::u16string_view path);
std::u16string colonsFromPosixPath(std::string_view path);

} // namespace quoddle::language

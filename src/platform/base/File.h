// SPDX-License-Identifier: MIT
// Whole files: read within a bound, written so that nothing is ever half there.
#pragma once

#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"

#include <string>
#include <string_view>

namespace quoddle {

/// -43 no such file, -54 no permission, -108 larger than `maximumSize` bytes, -50 a folder or no ordinary file, -36 the reading failed.
Result<std::string, OSStatus> readFile(const std::string& path, std::size_t maximumSize);

/// Writes beside the file and renames. An existing file keeps its mode. -54 no permission, -34 the disk is full, -120 no such folder, -36 anything else.
OSStatus writeFile(const std::string& path, std::string_view bytes);

/// The status number for an errno value.
OSStatus statusFromErrno(int error);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The paths of the well-known folders: one table of their codes, with a path for each domain that has such a folder on this system.
//
// The folders that a user sees (desktop, documents …) are those of the desktop's settings (user-dirs.dirs).
#pragma once

#include "platform/base/FourCharCode.h"

#include <optional>
#include <string>

namespace quoddle::additions {

/// The absolute path of a folder, which need not exist. Domain 0 stands for the folder's usual domain. nullopt when this system has no such
/// folder.
std::optional<std::string> wellKnownFolder(FourCharCode folder, FourCharCode domain);

} // namespace quoddle::additions

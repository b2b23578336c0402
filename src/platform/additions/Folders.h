// SPDX-License-Identifier: MIT
// Where the well-known folders are: one table of their codes, with a place for each domain that has one on this system.
//
// The folders that a user sees (desktop, documents …) are those of the desktop's own settings (user-dirs.dirs).
#pragma once

#include "platform/base/FourCharCode.h"

#include <optional>
#include <string>

namespace quoddle::additions {

/// The absolute path of a folder, which need not exist. A domain of 0 means the folder's usual one. Empty when there is no such folder
/// here.
std::optional<std::string> wellKnownFolder(FourCharCode folder, FourCharCode domain);

} // namespace quoddle::additions

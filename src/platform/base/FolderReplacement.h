// SPDX-License-Identifier: MIT
// Replaces a folder in one step, so that at any time either the old folder or the new one stands at the path, complete.
//
// Decision: the new folder is filled inside a hidden one beside its place, which nobody else may enter, and exchanged with the old one.
// Processes that replace the same folder at the same time wait for each other.
#pragma once

#include "platform/base/OSStatus.h"

#include <functional>
#include <string>

namespace quoddle {

/// The fate of contents of the old folder that the new one does not have.
enum class OldContent {
    kept, ///< copied: files with their permissions, links as links; what cannot be copied is an error, -50 for things of other kinds
    dropped
};

/// Makes an empty folder, lets `fill` fill it (the argument is its path) and puts it at `path`. After an error the old folder stands
/// unchanged. A link at `path` is followed. `mayReplace` says whether a folder that is already there may be replaced; -48 when not. -47
/// when other processes hold the folder for too long.
OSStatus replaceFolder(const std::string& path, const std::function<bool(const std::string& old)>& mayReplace,
                       const std::function<OSStatus(const std::string& folder)>& fill, OldContent oldContent = OldContent::kept);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// A folder that takes the place of another in one step, so that at all times one of the two stands there whole.
//
// Decision: the new folder is filled inside a hidden one beside its place, which nobody else may enter, and exchanged with the old one.
// Those who replace the same folder at the same time wait for each other.
#pragma once

#include "platform/base/OSStatus.h"

#include <functional>
#include <string>

namespace quoddle {

/// The fate of those contents of the old folder that the new one does not have.
enum class OldContent {
    kept, ///< files with their permissions, links as links; what cannot be copied is an error, and so is anything else (-50)
    dropped
};

/// Puts at `path` a folder that `fill` has filled; it gets the path of the new one, which is empty. On an error the old folder stays as it
/// was. A link at `path` is followed. `mayReplace` says whether a folder that is there may be replaced (-48 when not). -47 when others are
/// busy with it for too long.
OSStatus replaceFolder(const std::string& path, const std::function<bool(const std::string& old)>& mayReplace,
                       const std::function<OSStatus(const std::string& folder)>& fill, OldContent oldContent = OldContent::kept);

} // namespace quoddle

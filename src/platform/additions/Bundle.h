// SPDX-License-Identifier: MIT
// Bundles for commands: the running one, the resources in a bundle, its tables of localized texts.
//
// Decision: a resource outside the language folders is preferred, then those of the user's languages in order, then the English one, then
// the base.
#pragma once

#include "platform/ae/AEDesc.h"

#include <optional>
#include <string>
#include <string_view>

namespace quoddle::additions {

/// The path that setApplicationPath (StandardAdditions.h) has set; else the bundle that this program belongs to, or the program itself.
std::string applicationPath();

/// The path in the parameter "in bundle"; without the parameter applicationPath(). nullopt when it is no file.
std::optional<std::string> bundleParameter(const AEDesc& event);

/// The path of a resource below Contents/Resources; nullopt when there is none, or the name leads out of that folder.
std::optional<std::string> resourceInBundle(const std::string& bundle, std::string_view folder, std::string_view name);

/// The text for a key, from the table in the first of the user's languages that has the table. nullopt without an entry.
std::optional<std::u16string> localizedText(const std::string& bundle, std::string_view table, std::u16string_view key);

} // namespace quoddle::additions

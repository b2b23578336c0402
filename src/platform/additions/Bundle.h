// SPDX-License-Identifier: MIT
// Bundles as the commands see them: the one that runs, the resources in one, its tables of localized texts.
//
// Decision: resources are sought outside the folders of languages first, then in those of the user's languages, then in those of English.
#pragma once

#include "platform/ae/AEDesc.h"

#include <optional>
#include <string>
#include <string_view>

namespace quoddle::additions {

/// What setApplicationPath (StandardAdditions.h) named; else the bundle that this program belongs to, or the program itself.
std::string applicationPath();

/// "in bundle" of a command, without it the one that runs. Nothing when it is no file.
std::optional<std::string> bundleParameter(const AEDesc& event);

/// Below Contents/Resources. Nothing for paths that lead out of it.
std::optional<std::string> resourceInBundle(const std::string& bundle, std::string_view folder, std::string_view name);

/// The text for a key of a table of texts, in the first of the user's languages that has the table. Nothing without an entry.
std::optional<std::u16string> localizedText(const std::string& bundle, std::string_view table, std::u16string_view key);

} // namespace quoddle::additions

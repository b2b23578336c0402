// SPDX-License-Identifier: MIT
// Finds script libraries, the files behind `script "NAME"`.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quoddle::component {

/// The file or bundle of a library. `bundle`: the bundle of the script that asks, whose own libraries come first; empty when the script is
/// in no bundle. After these come the folders in OSA_LIBRARY_PATH (separated by colons), `quoddle/Script Libraries` in the user's data
/// folder, `Library/Script Libraries` in the home folder, and the system's data folders. The name has no folders in it; its extension may
/// be left out. nullopt when there is no such library.
std::optional<std::string> fileOfLibrary(std::string_view name, const std::string& bundle);

/// Whether a text is numbers with dots between them.
bool isVersion(std::string_view text);
/// Whether the version of a library, such as "1.10", is at least the wanted one, such as "1.9.2". Parts that are no numbers count as 0.
bool isVersionAtLeast(std::string_view version, std::string_view wanted);

} // namespace quoddle::component

// SPDX-License-Identifier: MIT
// Finds the scripting definition in a bundle.
#pragma once

#include <string>

namespace quoddle::sdef {

/// The file that OSAScriptingDefinition in the bundle's Info.plist names, else the only .sdef among its resources; empty when it has none.
/// A name that leads out of the bundle's resources counts as none. Any thread.
std::string dictionaryOfBundle(const std::string& bundle);

} // namespace quoddle::sdef

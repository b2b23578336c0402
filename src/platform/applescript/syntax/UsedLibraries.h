// SPDX-License-Identifier: MIT
// The names in a script's `use` statements: script libraries, as in `use maths : script "Maths" version "1.2"`, and the version of the
// language that it needs, as in `use AppleScript version "2.4"`.
#pragma once

#include "platform/applescript/image/Object.h"

#include <string_view>
#include <vector>

namespace quoddle::syntax {

struct UsedLibrary {
    const Object* node; // of the whole statement
    std::u16string_view name;
    std::u16string_view version; // the lowest one that will do; empty when any will
};

/// In the order of their statements. The texts live as long as the tree.
std::vector<UsedLibrary> usedLibraries(const Object* tree);
/// The versions of the language, likewise, without a name.
std::vector<UsedLibrary> usedLanguages(const Object* tree);

} // namespace quoddle::syntax

// SPDX-License-Identifier: MIT
// A tree in one line of text, for expectations and for people: (Set "a" $x).
//
// $x a variable, 'x' an identifier by itself, .abcd a property or term, `abcd` a class or constant as a literal, "text" and numbers as
// literals, nil; flags stand behind the name of the node as #hex.
#pragma once

#include "platform/applescript/image/Object.h"

#include <string>

namespace quoddle::syntax {

std::string treeText(const Object* tree);

} // namespace quoddle::syntax

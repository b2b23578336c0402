// SPDX-License-Identifier: MIT
// Whether a tree is one: trees out of files may be anything.
//
// What the parser makes is well formed. A tree that was read from a file has to be asked about before it is printed or compiled: every node
// must have the children that its kind calls for, no node may contain itself, and neither the depth nor the size written out may be beyond
// reason.
#pragma once

#include "platform/applescript/image/Object.h"

namespace quoddle::syntax {

/// Takes time in proportion to the number of objects.
bool isWellFormed(const Object* tree);

} // namespace quoddle::syntax

// SPDX-License-Identifier: MIT
// A conversation: statements are typed and run one after the other, and names last from one to the next.
//
// A statement goes on over lines while a block, a comment or a text in it is open. On a terminal Control-C gives up what is typed or ends
// what runs; otherwise the lines of standard input are taken as they come.
#pragma once

#include "ScriptTool.h"

namespace quoddle::tool {

/// Returns at the end of the input, with the program's exit status: 1 when a statement failed that did not come from a terminal. Throws
/// when the input cannot be read.
int interact(ComponentInstance instance, bool showsSource);

} // namespace quoddle::tool

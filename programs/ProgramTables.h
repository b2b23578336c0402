// SPDX-License-Identifier: MIT
// The command lines of the programs that people use. What is added here is told by --help and offered by the shells; a man page names it,
// too.
#pragma once

#include "CommandLine.h"

namespace quoddle::tool {

extern const Program kOsascript;
extern const Program kOsacompile;
extern const Program kOsadecompile;
extern const Program kOsalang;
extern const Program kQuoddle;

} // namespace quoddle::tool

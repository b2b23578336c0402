// SPDX-License-Identifier: MIT
// Translates stored code to the machine's register code (see Code.h), checking it on the way: whatever is in a handler block, the result is safe to run.
#pragma once

#include "platform/applescript/machine/Code.h"

namespace quoddle::machine {

class Heap;

/// Turns a stored literal into a value. Set by the loader.
using LiteralLoader = Value (*)(void* context, const Object* literal, const std::shared_ptr<ObjectStore>& store);

/// Never null. Code that makes no sense (unknown instruction, index out of range, jump into the middle of an instruction, unbalanced stack) becomes one
/// instruction that raises errOSACorruptData. `labels` are the interpreter's addresses by Op.
std::unique_ptr<Code> translate(const Handler& handler, Heap& heap, LiteralLoader load, void* context, const void* const* labels);

} // namespace quoddle::machine

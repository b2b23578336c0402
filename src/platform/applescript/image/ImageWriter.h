// SPDX-License-Identifier: MIT
// Writes stored objects in the compiled form of a script ("FasdUAS"), trailer included.
#pragma once

#include "platform/applescript/image/Object.h"
#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"

namespace quoddle {

/// The bytes of a compiled script with the given root: a Script block, or Nil for an empty script. The graph may span several stores; it is only read.
/// errOSAInternalTableOverflow: more shared objects than the form can number (32,767), or an object with more parts than its size field can say
/// (65,535). errOSADataBlockTooLarge: nested too deeply.
Result<std::string, OSStatus> writeImage(const Object* root);

} // namespace quoddle

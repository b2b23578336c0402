// SPDX-License-Identifier: MIT
// The compiled form of a script ("FasdUAS"): reading it into stored objects and writing it, trailer included.
//
// The stream is one object; every further record hangs off it in depth-first order of first use. The reader trusts nothing in the bytes: it
// checks every length, count and reference and the depth of nesting, and a bad stream yields an error, never a part of a graph. Reader and
// writer know the container and the kinds of records only; what handlers and code mean is the loader's business.
#pragma once

#include "platform/applescript/image/Object.h"
#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"

namespace quoddle {

/// A script at rest. The root is a Script block, or Nil for an empty script.
struct Image {
    std::shared_ptr<ObjectStore> store;
    Object* root = nullptr;
};

/// True when the bytes (after an optional #! line) begin like a compiled script.
bool looksLikeImage(std::string_view bytes);

/// errOSABadStorageType: not a compiled script. errOSADataFormatObsolete, errOSADataFormatTooNew: a version that is not read.
/// errOSACorruptData: damaged or truncated. Texts and names are copied; the bytes may go away.
Result<Image, OSStatus> readImage(std::string_view bytes);

/// The bytes of a compiled script with the given root: a Script block, or Nil for an empty script. The graph may span several stores; it is
/// only read. errOSAInternalTableOverflow: more shared objects than the form can number (32,767), or an object with more parts than its
/// size field can say (65,535). errOSADataBlockTooLarge: nested too deeply. The tree's nodes lose offsets in code behind its first 65,535
/// bytes.
Result<std::string, OSStatus> writeImage(const Object* root);

} // namespace quoddle

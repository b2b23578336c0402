// SPDX-License-Identifier: MIT
// Reads the compiled form of a script ("FasdUAS") into stored objects.
//
// The stream is one object; every further record hangs off it in depth-first order of first use. Nothing in the bytes is trusted: every length,
// count, reference and the depth of nesting are checked, and a bad stream yields an error, never a part of a graph. The reader knows the
// container and the record kinds only; what handlers and code mean is the loader's business.
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

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Clipboard: where the clipboard commands keep what is copied. By default that is the desktop's (ClipboardProcess.h), or, where there is no
// display, one that lives in this process.
#pragma once

#include "platform/ae/NSAppleEventManager.h"
#include "platform/base/Result.h"

#include <memory>
#include <vector>

namespace quoddle {

class Clipboard {
public:
    virtual ~Clipboard() = default;
    /// The same thing in several forms, the best one first; empty when there is nothing. What is needed to make a `wanted` class, or, for
    /// 0, everything. -128 when the context says that the script was cancelled, -609 when the desktop does not answer. Any thread.
    virtual Result<std::vector<AEDesc>, OSStatus> contents(DescType wanted, const AEHandlerContext& context) = 0;
    /// Replaces what is there. -10000 when the desktop refuses; the others as above. Any thread.
    virtual OSStatus setContents(std::vector<AEDesc> forms, const AEHandlerContext& context) = 0;

    /// Never null. Any thread.
    static std::shared_ptr<Clipboard> shared();
    /// Null brings the default back.
    static void setShared(std::shared_ptr<Clipboard> clipboard);
};

} // namespace quoddle

// SPDX-License-Identifier: MIT
// The clipboard that the clipboard commands use. By default it is the desktop's (ClipboardProcess.h) or, without a display, one inside this
// process.
#pragma once

#include "platform/ae/NSAppleEventManager.h"
#include "platform/base/Result.h"

#include <memory>
#include <vector>

namespace quoddle {

class Clipboard {
public:
    virtual ~Clipboard() = default;
    /// The clipboard's contents in all their forms, the best first; empty when the clipboard is empty. For a `wanted` class other than 0
    /// only the forms from which that class can be made. -128 when the context says that the script was cancelled, -609 when the desktop
    /// does not answer. Any thread.
    virtual Result<std::vector<AEDesc>, OSStatus> contents(DescType wanted, const AEHandlerContext& context) = 0;
    /// Replaces the contents. -10000 when the desktop refuses; other errors as of contents(). Any thread.
    virtual OSStatus setContents(std::vector<AEDesc> forms, const AEHandlerContext& context) = 0;

    /// The clipboard in use; never null. Any thread.
    static std::shared_ptr<Clipboard> shared();
    /// Null restores the default.
    static void setShared(std::shared_ptr<Clipboard> clipboard);
};

} // namespace quoddle

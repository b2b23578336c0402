// SPDX-License-Identifier: MIT
// Clipboard: where the clipboard commands keep what is copied. Without a desktop it lives in this process; a desktop puts its own in its
// place.
#pragma once

#include "platform/ae/AEDesc.h"

#include <memory>
#include <vector>

namespace quoddle {

class Clipboard {
public:
    virtual ~Clipboard() = default;
    /// The same thing in all the forms in which it was copied, the best one first; empty when there is nothing. Any thread.
    virtual std::vector<AEDesc> contents() = 0;
    /// Replaces what is there. False when the desktop refuses. Any thread.
    virtual bool setContents(std::vector<AEDesc> forms) = 0;

    /// Never null. Any thread.
    static std::shared_ptr<Clipboard> shared();
    /// Installed once, before the first script runs; null brings the clipboard of the process back.
    static void setShared(std::shared_ptr<Clipboard> clipboard);
};

} // namespace quoddle

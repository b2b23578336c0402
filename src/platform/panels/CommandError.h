// SPDX-License-Identifier: MIT
// A fault in the parameters of an interactive command, and how a reply tells it.
#pragma once

#include "platform/ae/AEDesc.h"

namespace quoddle {

struct CommandError {
    OSStatus number = noErr;
    std::u16string_view message = {}; ///< a literal; empty: the reply has none
    AEDesc offendingObject = {};      ///< "null": the reply has none
    FourCharCode expectedType = 0;    ///< 0: the reply has none

    /// Writes the error into the fields "errn", "errs", "erob" and "errt".
    void writeTo(AEDesc& reply) const;
};

} // namespace quoddle

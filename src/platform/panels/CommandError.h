// SPDX-License-Identifier: MIT
// What is wrong with an interactive command's parameters, and how that is said in its reply.
#pragma once

#include "platform/ae/AEDesc.h"

namespace quoddle {

struct CommandError {
    OSStatus number = noErr;
    std::u16string_view message = {}; ///< a literal; empty: the reply has none
    AEDesc offendingObject = {};      ///< "null": the reply has none
    FourCharCode expectedType = 0;    ///< 0: the reply has none

    /// Into "errn", "errs", "erob" and "errt".
    void writeTo(AEDesc& reply) const;
};

} // namespace quoddle

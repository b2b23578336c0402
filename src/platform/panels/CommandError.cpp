// SPDX-License-Identifier: MIT
#include "platform/panels/CommandError.h"

namespace quoddle {

void CommandError::writeTo(AEDesc& reply) const {
    (void)reply.put("errn"_4cc, AEDesc::ofInt32(number));
    if (!message.empty())
        (void)reply.put("errs"_4cc, AEDesc::ofText(message));
    if (!offendingObject.isNull())
        (void)reply.put("erob"_4cc, offendingObject);
    if (expectedType)
        (void)reply.put("errt"_4cc, AEDesc::ofType(expectedType));
}

} // namespace quoddle

// SPDX-License-Identifier: MIT
#include "platform/ae/AEReply.h"

namespace quoddle {

void AEPutError(const NSAppleEventDescriptorRef& reply, OSStatus status, const std::string& message) {
    if (status == noErr)
        return;
    reply->setParamDescriptor(NSAppleEventDescriptor::descriptorWithInt32(status), "errn"_4cc);
    if (!message.empty())
        reply->setParamDescriptor(NSAppleEventDescriptor::descriptorWithString(message), "errs"_4cc);
}

bool AEIsContinued(const NSAppleEventDescriptorRef& reply) {
    const auto attribute = reply->attributeDescriptorForKeyword("FDrm"_4cc);
    return attribute && attribute->booleanValue();
}

} // namespace quoddle

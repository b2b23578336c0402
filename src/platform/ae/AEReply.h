// SPDX-License-Identifier: MIT
// What application handlers put into a reply, and what it tells them about their event.
#pragma once

#include "platform/ae/NSAppleEventDescriptor.h"
#include "platform/base/OSStatus.h"

#include <string>

namespace quoddle {

/// "errn", and "errs" unless the message (UTF-8) is empty. Nothing for a status of 0.
void AEPutError(const NSAppleEventDescriptorRef& reply, OSStatus status, const std::string& message = {});

/// Whether a script has continued the event, which then waits for the handler's end: that end must not depend on the script.
bool AEIsContinued(const NSAppleEventDescriptorRef& reply);

} // namespace quoddle

// SPDX-License-Identifier: MIT
// Helpers for application handlers: errors in replies, and what a reply tells about its event.
#pragma once

#include "platform/ae/NSAppleEventDescriptor.h"
#include "platform/base/OSStatus.h"

#include <string>

namespace quoddle {

/// Puts "errn" into the reply, and "errs" unless the message (UTF-8) is empty. Does nothing for status 0.
void AEPutError(const NSAppleEventDescriptorRef& reply, OSStatus status, const std::string& message = {});

/// Whether a script has passed the event on with "continue" and waits for this handler; the handler must then not wait for the script.
bool AEIsContinued(const NSAppleEventDescriptorRef& reply);

} // namespace quoddle

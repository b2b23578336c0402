// SPDX-License-Identifier: MIT
// "choose URL": not answered by the applet. The handler does nothing and is not installed.
#pragma once

#include "dialogs/WorkItem.h"

namespace quoddle {

class ChooseURLHandler {
public:
    void processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent) {
        (void)event;
        (void)replyEvent;
    }
};

} // namespace quoddle

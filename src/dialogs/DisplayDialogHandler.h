// SPDX-License-Identifier: MIT
// "display dialog" in the applet's own window.
// Main thread only, but for processEvent(). A handler keeps itself until its reply has been sent.
#pragma once

#include "dialogs/WorkItem.h"

#include <memory>

namespace quoddle {

class DisplayDialogPanel;

class DisplayDialogHandler : public std::enable_shared_from_this<DisplayDialogHandler> {
public:
    DisplayDialogHandler();
    ~DisplayDialogHandler();

    /// Any thread.
    void processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent);
    void continueProcess(const WorkItem& item);

private:
    /// The giving-up timer's action.
    void _cancelAfterGivingUp();
    void writeAnswer(int returnCode, AEDesc& reply) const;

    std::unique_ptr<DisplayDialogPanel> mPanel;
};

} // namespace quoddle

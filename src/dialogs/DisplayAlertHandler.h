// SPDX-License-Identifier: MIT
// "display alert" on the applet's own window.
// Main thread only, but for processEvent(). A handler keeps itself until its reply has been sent.
#pragma once

#include "dialogs/WorkItem.h"

#include <memory>

namespace quoddle {

class DisplayAlertPanel;

class DisplayAlertHandler : public std::enable_shared_from_this<DisplayAlertHandler> {
public:
    DisplayAlertHandler();
    ~DisplayAlertHandler();

    /// Any thread.
    void processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent);
    void continueProcess(const WorkItem& item);

private:
    /// The giving-up timer's action.
    void _cancelAfterGivingUp();
    void writeAnswer(int returnCode, AEDesc& reply) const;

    std::unique_ptr<DisplayAlertPanel> mAlert;
};

} // namespace quoddle

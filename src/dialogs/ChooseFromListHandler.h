// SPDX-License-Identifier: MIT
// "choose from list" in the applet's own window.
// Main thread only, but for processEvent(). A handler keeps itself until its reply has been sent.
#pragma once

#include "dialogs/WorkItem.h"

#include <memory>

namespace quoddle {

class ChooseFromListPanel;

class ChooseFromListHandler : public std::enable_shared_from_this<ChooseFromListHandler> {
public:
    ChooseFromListHandler();
    ~ChooseFromListHandler();

    /// Any thread.
    void processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent);
    void continueProcess(const WorkItem& item);

private:
    void writeAnswer(int returnCode, AEDesc& reply) const;

    std::unique_ptr<ChooseFromListPanel> mPanel;
};

} // namespace quoddle

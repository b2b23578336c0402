// SPDX-License-Identifier: MIT
// "choose file name" in the applet's own window.
// Main thread only, but for processEvent(). A handler keeps itself until its reply has been sent.
#pragma once

#include "dialogs/WorkItem.h"

#include <memory>

namespace quoddle {

class NSSavePanel;

class ChooseFileNameHandler : public std::enable_shared_from_this<ChooseFileNameHandler> {
public:
    ChooseFileNameHandler();
    ~ChooseFileNameHandler();

    /// Any thread.
    void processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent);
    void continueProcess(const WorkItem& item);

private:
    std::shared_ptr<NSSavePanel> mPanel;
};

} // namespace quoddle

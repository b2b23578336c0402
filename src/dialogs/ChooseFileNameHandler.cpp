// SPDX-License-Identifier: MIT
#include "dialogs/ChooseFileNameHandler.h"

#include "dialogs/FileChooserSession.h"
#include "platform/panels/FileChoosers.h"

namespace quoddle {

ChooseFileNameHandler::ChooseFileNameHandler() = default;
ChooseFileNameHandler::~ChooseFileNameHandler() = default;

void ChooseFileNameHandler::processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent) {
    performOnMainThread({event, replyEvent}, [this](const WorkItem& item) { continueProcess(item); });
}

void ChooseFileNameHandler::continueProcess(const WorkItem& item) {
    mPanel = makeChooseFileNamePanel(ChooseFileNameParameters::read(item.front()->aeDesc()));
    beginFileChooserSession(mPanel, [self = shared_from_this()] {
        return AEDesc::ofFilePath(self->mPanel->url().toLocalFile().toStdString()); // nothing may be there yet
    });
}

} // namespace quoddle

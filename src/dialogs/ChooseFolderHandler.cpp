// SPDX-License-Identifier: MIT
#include "dialogs/ChooseFolderHandler.h"

#include "dialogs/FileChooserSession.h"
#include "platform/panels/FileChoosers.h"

namespace quoddle {

ChooseFolderHandler::ChooseFolderHandler() = default;
ChooseFolderHandler::~ChooseFolderHandler() = default;

void ChooseFolderHandler::processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent) {
    performOnMainThread({event, replyEvent}, [this](const WorkItem& item) { continueProcess(item); });
}

void ChooseFolderHandler::continueProcess(const WorkItem& item) {
    const auto parameters = ChooseFileParameters::readForFolders(item.front()->aeDesc());
    mPanel = makeChooseFolderPanel(parameters);
    beginFileChooserSession(mPanel, [self = shared_from_this(), isMultiple = parameters.multipleSelectionsAllowed] {
        return chosenFiles(*self->mPanel, isMultiple);
    });
}

} // namespace quoddle

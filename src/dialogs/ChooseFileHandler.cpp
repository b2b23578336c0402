// SPDX-License-Identifier: MIT
#include "dialogs/ChooseFileHandler.h"

#include "dialogs/FileChooserSession.h"
#include "platform/foundation/UTType.h"
#include "platform/panels/FileChoosers.h"
#include "runtime/AppDelegate.h"

namespace quoddle {

ChooseFileHandler::ChooseFileHandler() = default;
ChooseFileHandler::~ChooseFileHandler() = default;

void ChooseFileHandler::processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent) {
    performOnMainThread({event, replyEvent}, [this](const WorkItem& item) { continueProcess(item); });
}

void ChooseFileHandler::continueProcess(const WorkItem& item) {
    ChooseFileParameters parameters;
    if (const auto error = ChooseFileParameters::read(item.front()->aeDesc(), parameters))
        return writeError(*error, item);
    UTTypeDeclareTypesOfBundle(AppDelegate::instance()->mainBundle()->infoDictionary()); // its script may ask for them
    mPanel = makeChooseFilePanel(parameters);
    beginFileChooserSession(mPanel, [self = shared_from_this(), isMultiple = parameters.multipleSelectionsAllowed] {
        return chosenFiles(*self->mPanel, isMultiple);
    });
}

} // namespace quoddle

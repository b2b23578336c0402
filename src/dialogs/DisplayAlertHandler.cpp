// SPDX-License-Identifier: MIT
#include "dialogs/DisplayAlertHandler.h"

#include "dialogs/DialogSession.h"
#include "platform/appkit/BundleIcon.h"
#include "platform/foundation/NSLog.h"
#include "platform/panels/CommandDialog.h"
#include "platform/panels/DisplayAlertPanel.h"
#include "runtime/AppDelegate.h"

namespace quoddle {

using namespace Qt::StringLiterals;

DisplayAlertHandler::DisplayAlertHandler() = default;
DisplayAlertHandler::~DisplayAlertHandler() = default;

void DisplayAlertHandler::processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent) {
    performOnMainThread({event, replyEvent}, [this](const WorkItem& item) { continueProcess(item); });
}

void DisplayAlertHandler::continueProcess(const WorkItem& item) {
    DisplayAlertParameters parameters;
    if (const auto error = DisplayAlertParameters::read(item.front()->aeDesc(), parameters, false))
        return writeError(*error, item);
    std::ignore = applicationIcon(AppDelegate::instance()->mainBundle().get()); // alerts show it
    mAlert = std::make_unique<DisplayAlertPanel>(parameters);

    const auto self = shared_from_this();
    DialogForm form;
    form.beginSheet = [self](NSWindow& window, NSWindow::SheetCompletion completion) {
        self->mAlert->alert().beginSheetModal(window, [self, completion = std::move(completion)](int returnCode) {
            if (self->mAlert->isCancel(returnCode))
                NSLogTrace(u"cancelled...!"_s);
            completion(returnCode);
        });
    };
    form.runModal = [self] { return self->mAlert->alert().runModal(); };
    form.end = [self](int returnCode) { self->mAlert->alert().window().done(returnCode); };
    form.givingUpAfter = parameters.buttons.givingUpAfter;
    form.cancelAfterGivingUp = [self] { self->_cancelAfterGivingUp(); };
    beginDialogSession(std::move(form), [self](int returnCode, AEDesc& reply) { self->writeAnswer(returnCode, reply); });
}

void DisplayAlertHandler::_cancelAfterGivingUp() {
    mAlert->alert().window().done(kGaveUp); // a window of its own gives up as a sheet does
}

void DisplayAlertHandler::writeAnswer(int returnCode, AEDesc& reply) const {
    if (returnCode != kGaveUp && mAlert->isCancel(returnCode))
        return setCancelled(reply);
    setResult(reply, AEDesc::record({{"bhit"_4cc, descriptorOf(mAlert->buttonReturned(returnCode))},
                                     {"gavu"_4cc, AEDesc::ofBoolean(returnCode == kGaveUp)}}));
}

} // namespace quoddle

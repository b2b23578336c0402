// SPDX-License-Identifier: MIT
#include "dialogs/ChooseFromListHandler.h"

#include "dialogs/DialogSession.h"
#include "platform/appkit/NSApplication.h"
#include "platform/panels/ChooseFromListPanel.h"
#include "platform/panels/CommandDialog.h"

namespace quoddle {

ChooseFromListHandler::ChooseFromListHandler() = default;
ChooseFromListHandler::~ChooseFromListHandler() = default;

void ChooseFromListHandler::processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent) {
    performOnMainThread({event, replyEvent}, [this](const WorkItem& item) { continueProcess(item); });
}

void ChooseFromListHandler::continueProcess(const WorkItem& item) {
    ChooseFromListParameters parameters;
    if (const auto error = ChooseFromListParameters::read(item.front()->aeDesc(), parameters))
        return writeError(*error, item);
    mPanel = std::make_unique<ChooseFromListPanel>(parameters);

    const auto self = shared_from_this();
    DialogForm form;
    form.beginSheet = [self](NSWindow& window, NSWindow::SheetCompletion completion) {
        self->mPanel->prepareForSheetOn(window);
        window.beginSheet(&self->mPanel->window(), std::move(completion));
    };
    form.runModal = [self] {
        self->mPanel->prepareForModalForm();
        return NSApplication::sharedApplication()->runModalForWindow(self->mPanel->window());
    };
    form.end = [self](int returnCode) { self->mPanel->window().done(returnCode); };
    beginDialogSession(std::move(form), [self](int returnCode, AEDesc& reply) { self->writeAnswer(returnCode, reply); });
}

void ChooseFromListHandler::writeAnswer(int returnCode, AEDesc& reply) const {
    if (returnCode == ChooseFromListViewController::kCancelReturn)
        setResult(reply, AEDesc::ofBoolean(false));
    else if (returnCode == ChooseFromListViewController::kOKReturn)
        setResult(reply, mPanel->selectedItems());
}

} // namespace quoddle

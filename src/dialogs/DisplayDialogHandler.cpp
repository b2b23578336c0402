// SPDX-License-Identifier: MIT
#include "dialogs/DisplayDialogHandler.h"

#include "dialogs/DialogSession.h"
#include "platform/appkit/BundleIcon.h"
#include "platform/appkit/NSApplication.h"
#include "platform/panels/CommandDialog.h"
#include "platform/panels/DialogIcon.h"
#include "platform/panels/DisplayDialogPanel.h"
#include "runtime/AppDelegate.h"

namespace quoddle {

namespace {

/// The icon that is to be shown, if any; or what is wrong with the one that the script asks for.
std::optional<CommandError> readIcon(const IconParameter& parameter, QPixmap& icon) {
    const auto bundle = AppDelegate::instance()->mainBundle();
    // A named resource is looked for, and then not shown.
    if (parameter.kind == IconParameter::Kind::resource && pathForImageResource(*bundle, parameter.name).isEmpty())
        return resourceNotFound();
    return readDialogIcon(
        parameter, [&bundle] { return applicationIcon(bundle.get()); }, qApp->devicePixelRatio(), icon);
}

} // namespace

DisplayDialogHandler::DisplayDialogHandler() = default;
DisplayDialogHandler::~DisplayDialogHandler() = default;

void DisplayDialogHandler::processEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent) {
    performOnMainThread({event, replyEvent}, [this](const WorkItem& item) { continueProcess(item); });
}

void DisplayDialogHandler::continueProcess(const WorkItem& item) {
    DisplayDialogParameters parameters;
    if (const auto error = DisplayDialogParameters::read(item.front()->aeDesc(), parameters, false))
        return writeError(*error, item);
    QPixmap icon;
    if (const auto error = readIcon(parameters.icon, icon))
        return writeError(*error, item);
    mPanel = std::make_unique<DisplayDialogPanel>(parameters, icon);

    const auto self = shared_from_this();
    DialogForm form;
    form.beginSheet = [self](NSWindow& window, NSWindow::SheetCompletion completion) {
        window.beginSheet(&self->mPanel->window(), std::move(completion));
    };
    form.runModal = [self] { return NSApplication::sharedApplication()->runModalForWindow(self->mPanel->window()); };
    form.end = [self](int returnCode) { self->mPanel->window().done(returnCode); };
    form.givingUpAfter = parameters.buttons.givingUpAfter;
    form.cancelAfterGivingUp = [self] { self->_cancelAfterGivingUp(); };
    beginDialogSession(std::move(form), [self](int returnCode, AEDesc& reply) { self->writeAnswer(returnCode, reply); });
}

void DisplayDialogHandler::_cancelAfterGivingUp() {
    mPanel->window().done(kGaveUp);
}

void DisplayDialogHandler::writeAnswer(int returnCode, AEDesc& reply) const {
    if (returnCode != kGaveUp && mPanel->isCancel(returnCode))
        return setCancelled(reply);
    setResult(reply, AEDesc::record({{"bhit"_4cc, descriptorOf(mPanel->buttonReturned(returnCode))},
                                     {"ttxt"_4cc, descriptorOf(mPanel->textReturned())},
                                     {"gavu"_4cc, AEDesc::ofBoolean(returnCode == kGaveUp)}}));
}

} // namespace quoddle

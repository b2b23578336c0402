// SPDX-License-Identifier: MIT
#include "window/AppKitAlertPresenter.h"

#include "platform/appkit/NSAlert.h"
#include "platform/foundation/MainThread.h"
#include "window/AppletIconView.h"
#include "window/BaseWindowController.h"

namespace quoddle {

namespace {

std::shared_ptr<NSAlert> makeAlert(const RuntimeAlert& description) {
    std::ignore = appletIcon(); // alerts show it
    auto alert = std::make_shared<NSAlert>();
    alert->setAlertStyle(NSAlertStyle::critical);
    alert->setMessageText(description.messageText);
    alert->setInformativeText(description.informativeText);
    alert->addButton(description.buttonTitle);
    return alert;
}

} // namespace

void AppKitAlertPresenter::beginSheet(const RuntimeAlert& alert, WindowController& onWindowOf, std::function<void()> completion) {
    auto& controller = static_cast<BaseWindowController&>(onWindowOf);
    const auto shown = makeAlert(alert);
    shown->beginSheetModal(*controller.window(), [shown, completion = std::move(completion)](int) {
        // Later, and with the alert still alive: its button is in the middle of calling. When the application is ending this is dropped.
        MainThread::dispatchAsync([shown, completion] { completion(); });
    });
}

void AppKitAlertPresenter::runModal(const RuntimeAlert& alert) {
    makeAlert(alert)->runModal();
}

} // namespace quoddle

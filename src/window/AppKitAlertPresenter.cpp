// SPDX-License-Identifier: MIT
#include "window/AppKitAlertPresenter.h"

#include "platform/appkit/NSAlert.h"
#include "platform/foundation/MainThread.h"
#include "window/AppletIconView.h"
#include "window/BaseWindowController.h"

namespace quoddle {

namespace {

std::shared_ptr<NSAlert> makeAlert(const RuntimeAlert& description) {
    std::ignore = appletIcon(); // sets the icon of the application's windows, which alerts show
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
        // The completion waits for the event loop and the alert lives until then, because its button is in the middle of a call. When the
        // application is ending the completion is never called.
        MainThread::dispatchAsync([shown, completion] { completion(); });
    });
}

void AppKitAlertPresenter::runModal(const RuntimeAlert& alert) {
    makeAlert(alert)->runModal();
}

} // namespace quoddle
